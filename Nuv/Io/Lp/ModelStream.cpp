/// A model on a stream, apart from its text: who writes none links no streams.
#include "Nuv/Io/Lp/LpWriter.hpp"

#include <ostream>

namespace nuv
{

std::ostream& operator<<(std::ostream& out, const Model& model)
{
    return out << ToLp(model);
}

}  // namespace nuv
