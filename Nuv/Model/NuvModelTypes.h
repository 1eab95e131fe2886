/// @file
/// What the C interface of the model layer is made of: handles, results, diagnostics, and texts
/// that the library has made. Programs include NuvModel.h.
#ifndef NUV_MODEL_NUVMODELTYPES_H
#define NUV_MODEL_NUVMODELTYPES_H

#include <stdint.h>

/// @cond
#if defined(_WIN32) && defined(NUV_MODEL_SHARED)
#if defined(NUV_MODEL_BUILDING)
#define NUV_MODEL_VISIBLE __declspec(dllexport)
#else
#define NUV_MODEL_VISIBLE __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define NUV_MODEL_VISIBLE __attribute__((visibility("default")))
#else
#define NUV_MODEL_VISIBLE
#endif
/// @endcond

/// Precedes the declaration of every exported function of the model layer.
#if defined(__cplusplus)
#define NUV_MODEL_API extern "C" NUV_MODEL_VISIBLE
#else
#define NUV_MODEL_API extern NUV_MODEL_VISIBLE
#endif

/// A linear program.
typedef struct NuvModel NuvModel;
/// What a solve found.
typedef struct NuvSolution NuvSolution;
/// A session: what a solve leaves for the next one.
typedef struct NuvSolver NuvSolver;
/// What would make an infeasible model feasible.
typedef struct NuvRepair NuvRepair;
/// What became of the claim of a solution file.
typedef struct NuvClaim NuvClaim;
/// What a call had to say beside its result.
typedef struct NuvDiagnostics NuvDiagnostics;
/// A text that the library has made.
typedef struct NuvText NuvText;

/// How a call ended. A call that did not end with Ok has changed nothing but the diagnostics, and
/// has set what it would have made to null.
typedef int32_t NuvModelResult;
enum
{
    NUV_MODELRESULT_Ok = 0,
    /// A null where there must be none, an index or a count out of range, a record of an unknown
    /// size, a number that is none of its enumeration.
    NUV_MODELRESULT_InvalidArgument = 1,
    /// A handle that is null, of another kind, or no handle.
    NUV_MODELRESULT_InvalidHandle = 2,
    /// Something found no memory.
    NUV_MODELRESULT_NoMemory = 3,
    /// The numbers or names are none of a model: NaN, an infinite coefficient, a name twice.
    NUV_MODELRESULT_InvalidModel = 4,
    /// The file cannot be read at all.
    NUV_MODELRESULT_CannotRead = 5,
    /// What was read is not well formed.
    NUV_MODELRESULT_BadText = 6,
    /// The file cannot be written, or the format cannot hold the model.
    NUV_MODELRESULT_CannotWrite = 7,
    /// The solution has nothing of the kind.
    NUV_MODELRESULT_NotKnown = 8,
    /// The certificate does not prove what it claims, or is about another model.
    NUV_MODELRESULT_Refused = 9,
    /// A defect of the library.
    NUV_MODELRESULT_Internal = 10
};

/// No column, no row.
#define NUV_MODEL_NO_INDEX 0xFFFFFFFFu

/// How serious a diagnostic is.
enum
{
    NUV_SEVERITY_Error = 0,
    NUV_SEVERITY_Warning = 1,
    NUV_SEVERITY_Note = 2
};

/// One diagnostic. The strings are the handle's, end with a NUL and are never null; empty where
/// there is nothing to say.
typedef struct NuvDiagnostic
{
    /// sizeof(NuvDiagnostic), set by the caller.
    uint32_t size;
    /// NUV_SEVERITY_...
    uint32_t severity;
    /// From 1; 0 where there is no such place.
    uint64_t line;
    /// From 1, in characters; 0 where there is no such place.
    uint64_t column;
    /// For programs, the same in every version: "lp.unknown-section".
    const char* code;
    /// For people.
    const char* text;
    /// What to do about it.
    const char* hint;
    /// The file, as the call was told to call it.
    const char* file;
    /// The line of the text, where there is one.
    const char* excerpt;
} NuvDiagnostic;

/// The version of the library: "0.1.0".
NUV_MODEL_API const char* NuvModelGetVersion(void);

/// The version as one number, 10000 major + 100 minor + patch.
NUV_MODEL_API uint32_t NuvModelGetVersionNumber(void);

/// The name of a result, "NoMemory"; null for a number that is none.
NUV_MODEL_API const char* NuvModelGetResultName(NuvModelResult result);

/// Makes a place for what calls have to say.
/// @return null if there is no memory.
NUV_MODEL_API NuvDiagnostics* NuvDiagnosticsConstruct(void);

/// Gives it back; a null is nothing.
NUV_MODEL_API void NuvDiagnosticsDestruct(NuvDiagnostics* diagnostics);

/// How many there are of the last call that was given this handle.
NUV_MODEL_API uint32_t NuvDiagnosticsGetCount(const NuvDiagnostics* diagnostics);

/// Fills in `diagnostic`, whose strings stay until the next call that is given this handle.
NUV_MODEL_API NuvModelResult NuvDiagnosticsGet(const NuvDiagnostics* diagnostics, uint32_t index,
                                               NuvDiagnostic* diagnostic);

/// All of them as people see them, with lines, carets and hints.
NUV_MODEL_API NuvModelResult NuvDiagnosticsMakeText(const NuvDiagnostics* diagnostics,
                                                    NuvText** text);

/// The bytes, behind which there is a NUL that does not count; null for what is no text.
NUV_MODEL_API const char* NuvTextGetData(const NuvText* text);

/// How many bytes there are.
NUV_MODEL_API uint64_t NuvTextGetSize(const NuvText* text);

/// Gives it back; a null is nothing.
NUV_MODEL_API void NuvTextDestruct(NuvText* text);

#endif
