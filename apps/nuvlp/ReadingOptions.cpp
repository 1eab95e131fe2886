#include "ReadingOptions.hpp"

#include <CLI/CLI.hpp>

namespace nuvlp
{

void AddModelSource(CLI::App& command, ModelSource& source)
{
    command
        .add_option("FILE", source.file,
                    "The model, in CPLEX-LP or MPS format, plain or gzipped; - is standard input")
        ->required();
    command.add_flag("--relax", source.options.relax, "Read integer variables as continuous ones");
    const auto form = [&source](nuv::MpsForm value)
    { return [&source, value](std::int64_t) { source.options.mpsForm = value; }; };
    CLI::Option* const fixed = command.add_flag_function("--mps-fixed", form(nuv::MpsForm::Fixed),
                                                         "Read MPS fields by their columns");
    command
        .add_flag_function("--mps-free", form(nuv::MpsForm::Free),
                           "Read MPS fields by the blanks between them")
        ->excludes(fixed);
    command
        .add_option_function<std::string>(
            "--mps-objective-constant",
            [&source](const std::string& sign) { source.options.mpsConstantPlus = sign == "plus"; },
            "What the right-hand side of an MPS objective row is: the constant or its negative")
        ->check(CLI::IsMember({"plus", "minus"}))
        ->type_name("plus|minus");
    command.add_flag("--mps-sense-comment", source.options.mpsSenseComment,
                     "Obey a comment *SENSE:Maximize in an MPS file");
}

}  // namespace nuvlp
