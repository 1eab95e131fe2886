// The corpus: families of models, each model given by its family and its number, and the hashes
// that their solves have on every machine.
//
// Invariant: the same bits on every machine; see Random.hpp.
#pragma once

#include "Nuv/Corpus/Problem.hpp"
#include "Nuv/Corpus/Random.hpp"

namespace nuv::corpus
{
/// A small model with arrays of its own.
struct Model
{
    static constexpr uint32_t kMaxRows = 48;
    static constexpr uint32_t kMaxColumns = 100;
    static constexpr uint32_t kMaxCoefficients = 48 * 64;

    uint32_t rows;
    uint32_t columns;
    float A[kMaxCoefficients];
    float b[kMaxRows];
    float c[kMaxColumns];

    /// The model over its own arrays.
    Problem View()
    {
        return {rows, columns, A, b, c};
    }
};

struct Family
{
    const char* name;
    uint32_t models;
    /// Fills in a model whose rows and columns are set; it may take others. Null for fixed models.
    void (*make)(Problem* p, Random* random);
};

/// The families of the self-test; the first is that of fixed models.
uint32_t FamilyCount();
const Family& FamilyAt(uint32_t index);
/// Makes the model of that number, from 0, of a family.
void MakeModel(uint32_t family, uint32_t number, Model* model);

/// Models with names and hashes of their own: all fixed ones, and some of each family of
/// RandomModels.hpp.
struct Name
{
    char text[40];
};
uint32_t NamedModelCount();
Name MakeNamedModel(uint32_t number, Model* model);

/// Models from textbooks, with a few on which the method turns; the first are those of the
/// self-test.
uint32_t FixedModelCount();
/// @return the model's name.
const char* MakeFixedModel(uint32_t number, Problem* p);

/// The hash of a family's models, one after the other, or of a named model, as it was recorded.
struct Golden
{
    const char* name;
    uint64_t hash;
};
uint32_t GoldenCount();
const Golden& GoldenAt(uint32_t index);
/// @return the hash recorded under that name, or 0, which no solve hashes to.
uint64_t GoldenHash(const char* name);
}  // namespace nuv::corpus
