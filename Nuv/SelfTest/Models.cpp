// The table of families, and how a model of a family gets its size.
#include "Nuv/SelfTest/Models.hpp"

#include "Nuv/SelfTest/Numbers.hpp"

namespace nuv::selftest
{
namespace
{

constexpr uint32_t kEach = 500;

constexpr Family kFamilies[] = {
#include "Nuv/SelfTest/Families.inl"
};

/// Mostly small; one in ten is longer than the widest vectors and longer than they are in number.
void ChooseSize(uint32_t number, Model* model, Random* random)
{
    const bool isLarge = number % 10 == 9;
    model->rows = isLarge ? 16 + random->Below(Model::kMaxRows - 15) : 1 + random->Below(12);
    model->columns = isLarge ? 16 + random->Below(Model::kMaxColumns - 15) : 1 + random->Below(14);
}

}  // namespace

uint32_t FamilyCount()
{
    return sizeof kFamilies / sizeof *kFamilies;
}

const Family& FamilyAt(uint32_t index)
{
    return kFamilies[index];
}

void MakeModel(uint32_t family, uint32_t number, Model* model)
{
    *model = {};
    const Family& made = kFamilies[family];
    if (!made.make)
        return MakeFixedModel(number, model);
    Random random((static_cast<uint64_t>(family) << 32U) + number);
    ChooseSize(number, model, &random);
    made.make(model, &random);
}

}  // namespace nuv::selftest
