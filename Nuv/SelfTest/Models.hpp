// The corpus: families of models, each model given by its family and its number.
//
// Invariant: the same bits on every machine; see Numbers.hpp.
#pragma once

#include <stdint.h>

namespace nuv::selftest
{

class Random;

/// max cᵀx, A x ≤ b, x ≥ 0 with A (rows × columns) row after row.
struct Model
{
    static constexpr uint32_t kMaxRows = 48;
    static constexpr uint32_t kMaxColumns = 64;

    uint32_t rows;
    uint32_t columns;
    float A[kMaxRows * kMaxColumns];
    float b[kMaxRows];
    float c[kMaxColumns];
};

struct Family
{
    const char* name;
    uint32_t models;
    /// Fills in a model whose rows and columns are set, and which holds +0 everywhere; it may take
    /// fewer of both.
    void (*make)(Model* model, Random* random);
    /// What all of its models hash to, one after the other.
    uint64_t hash;
};

/// The families; the first is that of the fixed models.
uint32_t FamilyCount();
const Family& FamilyAt(uint32_t index);

/// Makes the model of that number, from 0, of a family.
void MakeModel(uint32_t family, uint32_t number, Model* model);

/// Those with names of their own, from textbooks.
uint32_t FixedModelCount();
void MakeFixedModel(uint32_t number, Model* model);

// Ordinary data.
void MakePlan(Model* model, Random* random);
void MakeMixedSigns(Model* model, Random* random);
void MakeTwoPhases(Model* model, Random* random);
void MakeCovering(Model* model, Random* random);
void MakeTransport(Model* model, Random* random);
void MakeAssignment(Model* model, Random* random);
void MakeSparse(Model* model, Random* random);
void MakeInfeasible(Model* model, Random* random);
void MakeUnbounded(Model* model, Random* random);
void MakeKleeMinty(Model* model, Random* random);
void MakeQuotients(Model* model, Random* random);

// Ties, cycles and holes.
void MakeTies(Model* model, Random* random);
void MakeEqualCoefficients(Model* model, Random* random);
void MakeRepeatedRows(Model* model, Random* random);
void MakeEmptyRowsAndColumns(Model* model, Random* random);
void MakeCycling(Model* model, Random* random);

// Data that no one should ask a solver for.
void MakeWideExponents(Model* model, Random* random);
void MakeOverflowing(Model* model, Random* random);
void MakeSubnormal(Model* model, Random* random);
void MakeSpecialValues(Model* model, Random* random);

}  // namespace nuv::selftest
