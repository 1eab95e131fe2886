#include "Nuv/Algebra/Lifting/Residues.hpp"

namespace nuv
{

SparseVectors<std::uint64_t> Residues(const SparseVectors<ExactNumber>& columns,
                                      const PrimeField& field)
{
    SparseVectors<std::uint64_t> residues;
    residues.start.reserve(columns.start.size());
    residues.index.reserve(columns.index.size());
    residues.value.reserve(columns.index.size());
    Scale last;
    std::uint64_t power = field.One();
    for (Index k = 0; k < columns.Count(); ++k)
    {
        for (const auto [row, entry] : columns[k])
        {
            if (!(entry.scale == last))  // same bits: made again it is the same
            {
                last = entry.scale;
                power = field.PowerOf(last);
            }
            const std::uint64_t residue = field.Product(field.FromSigned(entry.mantissa), power);
            if (residues.index.size() > residues.start.back() && residues.index.back() == row)
                residues.value.back() = field.Sum(residues.value.back(), residue);
            else
                residues.Append(row, residue);
        }
        residues.Close();
    }
    return residues;
}

}  // namespace nuv
