// The corpus of models whose solves have the same hashes on every machine, for the tests of this
// package: each family is solved by the core one by one and in batches.
#include "Nuv/Corpus/Families.hpp"
#include "Nuv/SelfTest/SelfTest.hpp"

#define NUV_EXPORT(name) __attribute__((export_name(name))) extern "C"

using namespace nuv;

NUV_EXPORT("families") unsigned Families()
{
    return corpus::FamilyCount();
}

NUV_EXPORT("nameOf") const char* NameOf(unsigned family)
{
    return corpus::FamilyAt(family).name;
}

NUV_EXPORT("models") unsigned Models(unsigned family)
{
    return corpus::FamilyAt(family).models;
}

NUV_EXPORT("promised") unsigned long long Promised(unsigned family)
{
    return corpus::GoldenHash(corpus::FamilyAt(family).name);
}

/// By which loops: 0 those of this build, 1 plain, 2 four lanes.
NUV_EXPORT("run") unsigned long long Run(unsigned family, unsigned loops)
{
    return selftest::RunFamily(family, static_cast<selftest::Loops>(loops)).hash;
}

NUV_EXPORT("has") unsigned Has(unsigned loops)
{
    return selftest::Has(static_cast<selftest::Loops>(loops)) ? 1 : 0;
}
