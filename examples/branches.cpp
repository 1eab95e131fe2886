// How efficient are the branches of a bank? For each, the mix of branches is sought that brings at
// least as much with the smallest share of what this one uses (data envelopment analysis).
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <vector>

struct Branch
{
    const char* name;
    std::vector<double> uses;    // staff, floor in square metres
    std::vector<double> brings;  // loans, deposits, transactions in thousands
};

/// The coefficients that the branches have at one place of what they use or bring.
std::vector<double> Column(const std::vector<Branch>& branches,
                           std::vector<double> Branch::*numbers, std::size_t at)
{
    std::vector<double> column;
    for (const Branch& branch : branches)
        column.push_back((branch.*numbers)[at]);
    return column;
}

int main()
{
    const std::vector<Branch> branches = {{"Quay", {8, 120}, {30, 55, 40}},
                                          {"Market", {12, 200}, {52, 60, 75}},
                                          {"Station", {6, 150}, {18, 25, 60}},
                                          {"Hill", {10, 180}, {28, 48, 45}}};
    for (const Branch& branch : branches)
    {
        nuv::Model model;
        const nuv::Variable share = model.AddVariable("share");
        const std::vector<nuv::Variable> mix = model.AddVariables(branches.size());
        for (std::size_t k = 0; k < branch.uses.size(); ++k)
            model.Add(Dot(Column(branches, &Branch::uses, k), mix) <= branch.uses[k] * share);
        for (std::size_t k = 0; k < branch.brings.size(); ++k)
            model.Add(Dot(Column(branches, &Branch::brings, k), mix) >= branch.brings[k]);
        model.Minimize(share);

        const nuv::Solution solution = model.Solve();
        std::printf("%-8s %5.1f %%, exactly %s", branch.name, 100 * solution.objective,
                    solution.exactObjective.c_str());
        for (std::size_t k = 0; k < branches.size(); ++k)
            if (solution.Value(mix[k]) > 0 && solution.objective < 1)
                std::printf("; %.2f of %s", solution.Value(mix[k]), branches[k].name);
        std::printf("\n");
    }
}
