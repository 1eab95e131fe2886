"""Writes nuv/_interface.py: the declarations of the libraries, out of the headers themselves.

cffi's ABI mode takes C declarations without a preprocessor. The headers of the model layer are made
of nothing else once comments, directives and the word that exports a function are taken out; of the
core the package needs the batch of problems alone, whose header stands on types with other names.
"""

from __future__ import annotations

import re
import sys
from pathlib import Path

MODEL_HEADERS = ("NuvModelTypes.h", "NuvSolution.h", "NuvRepair.h", "NuvClaim.h", "NuvBatch.h", "NuvModel.h")


def declarations(header: Path) -> str:
    """The declarations in a header: numbers defined by #define stay, all other directives go."""
    text = header.read_text(encoding="utf-8")
    text = re.sub(r"/\*.*?\*/|//[^\n]*", "", text, flags=re.S)
    constants = re.findall(r"^#define (NUV_MODEL_[A-Z_]+) (0x[0-9A-F]+)u?$", text, flags=re.M)
    text = re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", "", text, flags=re.M)
    text = re.sub(r"\bNUV_(?:MODEL_)?API\b", "", text)
    return text + "".join(f"#define {name} {value}\n" for name, value in constants)


def core_declarations(sources: Path) -> str:
    """What the batch of the core is declared with."""
    header = sources / "Nuv/Utils/NuvLinearProgrammingBatch.h"
    if not header.exists():
        return ""
    types = "typedef uint32_t NuvUint; typedef float NuvFloat32; typedef uint64_t NuvSizeT; "
    return types + "typedef uint8_t NuvBool;\n" + declarations(header)


def write(sources: Path, output: Path) -> None:
    """Writes the module for the headers of a source tree."""
    from cffi import FFI

    ffi = FFI()
    for name in MODEL_HEADERS:
        ffi.cdef(declarations(sources / "Nuv/Model" / name))
    ffi.cdef(core_declarations(sources))
    ffi.set_source("nuv._interface", None)
    output.parent.mkdir(parents=True, exist_ok=True)
    ffi.emit_python_code(str(output))


if __name__ == "__main__":
    here = Path(__file__).resolve().parent
    write(here.parent, Path(sys.argv[1]) if len(sys.argv) > 1 else here / "nuv/_interface.py")
