// A user's program in C++20, found by CMake: maximise 3x + 2y under x <= 4 and x + y <= 6 with the
// owning class. It must find 16 at (4, 2).
#include "Nuv/Utils/NuvLinearProgramming.hpp"

#include <cstdlib>
#include <iostream>

int main()
{
    nuv::LinearProgram program(2);
    program.SetConstraint(1, {{1, 1.0F}}, 4.0F);
    program.SetConstraint(2, {{1, 1.0F}, {2, 1.0F}}, 6.0F);
    program.SetObjective({{1, 3.0F}, {2, 2.0F}});
    if (program.Solve() != nuv::Verdict::Ok)
        return EXIT_FAILURE;
    std::cout << program.Objective() << " at (" << program.Value(1) << ", " << program.Value(2)
              << ")\n";
    const bool right =
        program.Objective() == 16.0F && program.Value(1) == 4.0F && program.Value(2) == 2.0F;
    return right ? EXIT_SUCCESS : EXIT_FAILURE;
}
