/// @file
/// The model layer for C, and for every language that can call C: state a linear program, solve it,
/// and have the answer proved in exact arithmetic.
///
///     minimise or maximise  c . x + constant
///     subject to            rowLower <= A x <= rowUpper,   columnLower <= x <= columnUpper
///
/// Columns (variables) and rows are numbered from 0. Bounds may be infinite, other numbers not.
///
/// Ownership: what a ...Construct..., NuvModelSolve or a function that makes a text returns is the
/// caller's, to be given back by its ...Destruct; given back twice is undefined, null is nothing.
/// What is passed in is only read during the call. Pointers that come out of a model stay until its
/// next change; those out of a solution until that is given back, whatever becomes of the model.
///
/// Threads: there is no global state. A handle is used by one thread at a time; two threads may
/// use two handles, also a model and a solution or a copy of it, and may ask the same handle that
/// is const in all of these calls at the same time.
///
/// Failure: every call says by its result how it ended, and no exception leaves the library, also
/// where there is no memory. (A library built with GMP ends the program if GMP itself finds none
/// for the digits of a number.) `diagnostics`, which may be null, is told more.
///
/// Records start with their size, which the caller sets: a later version may know longer ones,
/// takes the shorter for what they were, and takes a longer one if what it does not know is zero.
/// All records are made of naturally aligned numbers and pointers without gaps.
#ifndef NUV_MODEL_NUVMODEL_H
#define NUV_MODEL_NUVMODEL_H

#include "Nuv/Model/NuvBatch.h"
#include "Nuv/Model/NuvClaim.h"
#include "Nuv/Model/NuvModelTypes.h"
#include "Nuv/Model/NuvRepair.h"
#include "Nuv/Model/NuvSolution.h"

/// The direction of the objective.
enum
{
    NUV_SENSE_Minimize = 0,
    NUV_SENSE_Maximize = 1
};

/// How the entries of a matrix lie in its arrays.
enum
{
    NUV_LAYOUT_ByRows = 0,
    NUV_LAYOUT_ByColumns = 1
};

/// A whole model as arrays. Where an array of bounds or costs is null, its default holds: cost 0,
/// columns from 0 to infinity, rows from minus infinity to infinity. Vector k of the matrix (row or
/// column, by the layout) is the entries starts[k] to starts[k + 1] of `indices` and `values`; none
/// has an index twice.
typedef struct NuvModelArrays
{
    /// sizeof(NuvModelArrays), set by the caller.
    uint32_t size;
    /// NUV_SENSE_...
    uint32_t sense;
    /// How long the arrays by column are.
    uint32_t numColumns;
    /// How long the arrays by row are.
    uint32_t numRows;
    /// NUV_LAYOUT_...
    uint32_t layout;
    /// Zero.
    uint32_t reserved;
    /// How many entries `indices` and `values` have.
    uint64_t numEntries;
    /// Of the objective.
    double constant;
    /// [numColumns]; null is 0 for all.
    const double* costs;
    /// [numColumns], -infinity for none; null is 0 for all.
    const double* columnLower;
    /// [numColumns]; null is infinity for all, which is none.
    const double* columnUpper;
    /// [numRows]; null is -infinity for all, which is none.
    const double* rowLower;
    /// [numRows]; null is infinity for all, which is none.
    const double* rowUpper;
    /// numRows + 1 or numColumns + 1 of them, the first 0, the last numEntries; null for a matrix
    /// without entries.
    const uint64_t* starts;
    /// [numEntries] columns, or by columns the rows; within one vector no index twice.
    const uint32_t* indices;
    /// [numEntries] finite.
    const double* values;
    /// The names, each ended by a NUL, one behind the other: "chairs\0tables\0", 14 bytes. An empty
    /// one, or null for all, asks for a made one: x<k> or R<k>, k from 1.
    const char* columnNames;
    /// In bytes, the last NUL included; 0 for null.
    uint64_t columnNamesSize;
    /// The same for the rows.
    const char* rowNames;
    /// In bytes, as that of the columns.
    uint64_t rowNamesSize;
} NuvModelArrays;

/// What a file is read as.
enum
{
    NUV_FORMAT_ByContent = 0,
    NUV_FORMAT_Lp = 1,
    NUV_FORMAT_Mps = 2,
    NUV_FORMAT_MpsFixed = 3,
    NUV_FORMAT_MpsFree = 4
};

/// What a reader is to make of what the formats leave open.
typedef struct NuvReadOptions
{
    /// sizeof(NuvReadOptions), set by NuvReadOptionsInit.
    uint32_t size;
    /// NUV_FORMAT_...
    uint32_t format;
    /// Not 0: takes integer variables for continuous ones, with a warning, instead of refusing
    /// them.
    uint32_t relax;
    /// Not 0: takes the right-hand side of an MPS file's objective row for the constant itself.
    uint32_t mpsConstantPlus;
    /// Not 0: obeys a comment *SENSE:Maximize of an MPS file without OBJSENSE.
    uint32_t mpsSenseComment;
    /// Zero.
    uint32_t reserved;
} NuvReadOptions;

/// Makes a model without columns and rows, to be minimised.
/// @return null if there is no memory.
NUV_MODEL_API NuvModel* NuvModelConstruct(void);

/// Makes a copy, which shares its storage with the original until one of them changes.
/// @return null if there is no memory or `model` is none.
NUV_MODEL_API NuvModel* NuvModelConstructCopy(const NuvModel* model);

/// Gives it back; a null is nothing. Its solutions stay.
NUV_MODEL_API void NuvModelDestruct(NuvModel* model);

/// Fills in a record without columns and rows. `size` is sizeof(NuvModelArrays).
NUV_MODEL_API NuvModelResult NuvModelArraysInit(NuvModelArrays* arrays, uint32_t size);

/// Makes the model the one of the arrays, whatever it was.
NUV_MODEL_API NuvModelResult NuvModelAssignArrays(NuvModel* model, const NuvModelArrays* arrays,
                                                  NuvDiagnostics* diagnostics);

/// The model as arrays, by rows and without names. `arrays->size` is set by the caller.
NUV_MODEL_API NuvModelResult NuvModelGetArrays(NuvModel* model, NuvModelArrays* arrays);

/// Appends columns without entries; null arrays as in NuvModelArrays.
NUV_MODEL_API NuvModelResult NuvModelAddColumns(NuvModel* model, uint32_t count,
                                                const double* costs, const double* lower,
                                                const double* upper, const char* names,
                                                uint64_t namesSize, NuvDiagnostics* diagnostics);

/// Appends rows; row k of them has the entries starts[k] to starts[k + 1] of `columns` and
/// `coefficients`, which have `starts[count]` entries. Null `starts` are rows without entries.
NUV_MODEL_API NuvModelResult NuvModelAddRows(NuvModel* model, uint32_t count, const double* lower,
                                             const double* upper, const uint64_t* starts,
                                             const uint32_t* columns, const double* coefficients,
                                             const char* names, uint64_t namesSize,
                                             NuvDiagnostics* diagnostics);

/// Sets the costs of these columns; null `columns` are the first `count`.
NUV_MODEL_API NuvModelResult NuvModelSetCosts(NuvModel* model, uint32_t count,
                                              const uint32_t* columns, const double* costs,
                                              NuvDiagnostics* diagnostics);

/// Sets the bounds of these columns; null `columns` are the first `count`, a null array of bounds
/// leaves these as they are.
NUV_MODEL_API NuvModelResult NuvModelSetColumnBounds(NuvModel* model, uint32_t count,
                                                     const uint32_t* columns, const double* lower,
                                                     const double* upper,
                                                     NuvDiagnostics* diagnostics);

/// The same for the two sides of rows.
NUV_MODEL_API NuvModelResult NuvModelSetRowBounds(NuvModel* model, uint32_t count,
                                                  const uint32_t* rows, const double* lower,
                                                  const double* upper, NuvDiagnostics* diagnostics);

/// Sets coefficients, `count` of them, each by its row and column; 0 takes the entry out.
NUV_MODEL_API NuvModelResult NuvModelSetCoefficients(NuvModel* model, uint32_t count,
                                                     const uint32_t* rows, const uint32_t* columns,
                                                     const double* coefficients,
                                                     NuvDiagnostics* diagnostics);

/// Takes out these columns with all their coefficients; null `columns` are the first `count`. Those
/// behind them move up.
NUV_MODEL_API NuvModelResult NuvModelRemoveColumns(NuvModel* model, uint32_t count,
                                                   const uint32_t* columns,
                                                   NuvDiagnostics* diagnostics);

/// The same for rows.
NUV_MODEL_API NuvModelResult NuvModelRemoveRows(NuvModel* model, uint32_t count,
                                                const uint32_t* rows, NuvDiagnostics* diagnostics);

/// Which number of a model: of a column or row `at`, or the entry of row `at` in `column`.
enum
{
    NUV_PLACE_Constant = 0,
    NUV_PLACE_Cost = 1,
    NUV_PLACE_ColumnLower = 2,
    NUV_PLACE_ColumnUpper = 3,
    NUV_PLACE_RowLower = 4,
    NUV_PLACE_RowUpper = 5,
    NUV_PLACE_Entry = 6
};

/// Sets one number, NUV_PLACE_..., to what a text says: an integer, a decimal of any length, or a
/// quotient like "-1/3". The double there becomes the nearest one; the number itself is kept beside
/// it, and NUV_NUMBERS_Written is about that. Setting a double there again forgets
/// it, for a bound also that of the other bound.
NUV_MODEL_API NuvModelResult NuvModelSetExact(NuvModel* model, uint32_t place, uint32_t at,
                                              uint32_t column, const char* text,
                                              NuvDiagnostics* diagnostics);

/// Writes the text of a number that its double does not say into `buffer`, cut to `size` bytes with
/// its NUL; a null buffer of size 0 only asks.
/// @return the bytes that the whole text takes with its NUL; 0 where the double says it all.
NUV_MODEL_API uint64_t NuvModelGetExact(const NuvModel* model, uint32_t place, uint32_t at,
                                        uint32_t column, char* buffer, uint64_t size);

/// Sets NUV_SENSE_...
NUV_MODEL_API NuvModelResult NuvModelSetSense(NuvModel* model, uint32_t sense);

/// Sets the constant of the objective.
NUV_MODEL_API NuvModelResult NuvModelSetConstant(NuvModel* model, double constant,
                                                 NuvDiagnostics* diagnostics);

/// Sets the name of the model.
NUV_MODEL_API NuvModelResult NuvModelSetName(NuvModel* model, const char* name);

/// Sets the name of the objective.
NUV_MODEL_API NuvModelResult NuvModelSetObjectiveName(NuvModel* model, const char* name);

/// The name of the model; null if `model` is none.
NUV_MODEL_API const char* NuvModelGetName(const NuvModel* model);

/// The name of the objective; null if `model` is none.
NUV_MODEL_API const char* NuvModelGetObjectiveName(const NuvModel* model);

/// How many columns there are; 0 for what is no model, as in the next two.
NUV_MODEL_API uint32_t NuvModelGetNumColumns(const NuvModel* model);

/// How many rows there are.
NUV_MODEL_API uint32_t NuvModelGetNumRows(const NuvModel* model);

/// How many coefficients the rows have, stored zeros included.
NUV_MODEL_API uint64_t NuvModelGetNumEntries(const NuvModel* model);

/// Writes the name of a column into `buffer`, cut to `size` bytes with its NUL; a null buffer of
/// size 0 only asks.
/// @return the bytes that the whole name takes with its NUL; 0 if there is no such column.
NUV_MODEL_API uint64_t NuvModelGetColumnName(const NuvModel* model, uint32_t column, char* buffer,
                                             uint64_t size);

/// The same for a row.
NUV_MODEL_API uint64_t NuvModelGetRowName(const NuvModel* model, uint32_t row, char* buffer,
                                          uint64_t size);

/// All names of the columns in the form in which NuvModelArrays takes them.
NUV_MODEL_API NuvModelResult NuvModelMakeColumnNames(const NuvModel* model, NuvText** names);

/// The same for the rows.
NUV_MODEL_API NuvModelResult NuvModelMakeRowNames(const NuvModel* model, NuvText** names);

/// The column of this name, or NUV_MODEL_NO_INDEX.
NUV_MODEL_API uint32_t NuvModelFindColumn(const NuvModel* model, const char* name);

/// The row of this name, or NUV_MODEL_NO_INDEX.
NUV_MODEL_API uint32_t NuvModelFindRow(const NuvModel* model, const char* name);

/// Fills in the defaults. `size` is sizeof(NuvReadOptions).
NUV_MODEL_API NuvModelResult NuvReadOptionsInit(NuvReadOptions* options, uint32_t size);

/// Makes the model the one in a file in LP or MPS format, plain or gzipped; "-" is standard input.
/// Null `options` are the defaults. Warnings and notes are told where the reading succeeds too.
NUV_MODEL_API NuvModelResult NuvModelRead(NuvModel* model, const char* path,
                                          const NuvReadOptions* options,
                                          NuvDiagnostics* diagnostics);

/// The same for the `size` bytes of a file in memory; `name` is what diagnostics call it, and its
/// ending says the format where the text does not.
NUV_MODEL_API NuvModelResult NuvModelReadText(NuvModel* model, const char* text, uint64_t size,
                                              const char* name, const NuvReadOptions* options,
                                              NuvDiagnostics* diagnostics);

/// Writes the model to a file, in NUV_FORMAT_...: ByContent goes by the ending of the path, MPS for
/// .mps and LP for all others. A path that ends with .gz is compressed.
NUV_MODEL_API NuvModelResult NuvModelWrite(const NuvModel* model, const char* path, uint32_t format,
                                           NuvDiagnostics* diagnostics);

/// The same as a text; ByContent is LP.
NUV_MODEL_API NuvModelResult NuvModelMakeText(const NuvModel* model, uint32_t format,
                                              NuvText** text, NuvDiagnostics* diagnostics);

/// Reads a basis of this model out of an MPS basis file, plain or gzipped; "-" is standard input.
/// The arrays are the caller's and as long as the model has columns and rows, which the two numbers
/// repeat; each byte becomes NUV_BASISSTATUS_..., as NuvSolveOptions takes them.
/// @return BadText if the file is none, or names what the model has not; the arrays stay then.
NUV_MODEL_API NuvModelResult NuvModelReadBasis(const NuvModel* model, const char* path,
                                               uint8_t* columnBasis, uint32_t numColumns,
                                               uint8_t* rowBasis, uint32_t numRows,
                                               NuvDiagnostics* diagnostics);

/// The same for the `size` bytes of a file in memory; `name` is what diagnostics call it.
NUV_MODEL_API NuvModelResult NuvModelReadBasisText(const NuvModel* model, const char* text,
                                                   uint64_t size, const char* name,
                                                   uint8_t* columnBasis, uint32_t numColumns,
                                                   uint8_t* rowBasis, uint32_t numRows,
                                                   NuvDiagnostics* diagnostics);

/// Writes a basis of this model as an MPS basis file, which reads back to the same; a path that
/// ends with .gz is compressed. NuvSolutionGetColumnBasis and ...RowBasis give such arrays.
/// @return CannotWrite for a file that cannot be written, for a name that the format cannot hold,
/// and where there are not as many basic columns as nonbasic rows.
NUV_MODEL_API NuvModelResult NuvModelWriteBasis(const NuvModel* model, const char* path,
                                                const uint8_t* columnBasis, uint32_t numColumns,
                                                const uint8_t* rowBasis, uint32_t numRows,
                                                NuvDiagnostics* diagnostics);

/// The same as a text.
NUV_MODEL_API NuvModelResult NuvModelMakeBasisText(const NuvModel* model,
                                                   const uint8_t* columnBasis, uint32_t numColumns,
                                                   const uint8_t* rowBasis, uint32_t numRows,
                                                   NuvText** text, NuvDiagnostics* diagnostics);

#endif
