#include "tests/support/KnownModels.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace nuv::test
{
namespace
{

std::vector<std::string> SplitAtTabs(const std::string& line)
{
    std::vector<std::string> fields;
    std::istringstream rest(line);
    for (std::string field; std::getline(rest, field, '\t');)
        fields.push_back(field);
    return fields;
}

Rational PowerOfTen(int exponent)
{
    const Integer power = Power(Integer(10), static_cast<unsigned>(std::abs(exponent)));
    return exponent < 0 ? Rational(Integer(1), power) : Rational(power);
}

/// An unsigned number: digits, perhaps with a point, perhaps with an exponent.
std::optional<Rational> ParseDecimal(std::string_view text)
{
    Integer digits(0);
    int exponent = 0;
    bool any = false;
    bool behindPoint = false;
    std::size_t at = 0;
    for (; at < text.size() && (text[at] == '.' ? !behindPoint : std::isdigit(text[at]) != 0); ++at)
    {
        if (text[at] == '.')
        {
            behindPoint = true;
            continue;
        }
        digits = digits * 10 + (text[at] - '0');
        exponent -= behindPoint ? 1 : 0;
        any = true;
    }
    if (!any)
        return std::nullopt;
    if (at < text.size())
    {
        if (text[at] != 'e' && text[at] != 'E')
            return std::nullopt;
        std::string_view written = text.substr(at + 1);
        if (written.starts_with('+'))
            written.remove_prefix(1);
        int value = 0;
        const auto end = std::from_chars(written.data(), written.data() + written.size(), value);
        if (end.ec != std::errc() || end.ptr != written.data() + written.size())
            return std::nullopt;
        exponent += value;
    }
    return Rational(digits) * PowerOfTen(exponent);
}

std::string StemOf(const std::filesystem::path& path)
{
    std::string name = path.filename().string();
    for (const std::string_view ending : {".gz", ".mps", ".lp"})
        if (name.ends_with(ending))
            name.resize(name.size() - ending.size());
    return name;
}

std::vector<std::filesystem::path> FilesIn(const std::string& folder, std::string_view ending)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().string().ends_with(ending))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

/// What stands behind "published answer:" up to " at ": "unbounded", "infeasible", or a number,
/// perhaps with its decimals behind an equals sign.
std::string PublishedAnswer(const std::filesystem::path& path)
{
    static constexpr std::string_view kMark = "published answer: ";
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
    {
        const std::size_t begin = line.find(kMark);
        if (begin == std::string::npos)
            continue;
        std::string answer = line.substr(begin + kMark.size());
        answer.resize(std::min(answer.find(" at "), answer.size()));
        answer.resize(std::min(answer.find(" = "), answer.size()));
        return answer;
    }
    return {};
}

}  // namespace

std::vector<KnownModel> KnownNetlibModels(const std::string& folder)
{
    enum Field
    {
        Name,
        File,
        Bytes = 7,
        Constant,
        Rounded,
        Exact,
        Fields
    };
    struct Line
    {
        double bytes;
        KnownModel model;
    };
    std::vector<Line> lines;
    std::ifstream table(folder + "/optima.tsv");
    std::string line;
    std::getline(table, line);
    while (std::getline(table, line))
    {
        const std::vector<std::string> fields = SplitAtTabs(line);
        if (fields.size() < Fields || !std::filesystem::exists(folder + "/" + fields[File]))
            continue;
        // The last digit is off by one at most.
        const bool isExact = !fields[Exact].empty();
        KnownModel model{fields[Name], folder + "/" + fields[File], Status::Optimal,
                         ParseRational(isExact ? fields[Exact] : fields[Rounded]).value(),
                         PowerOfTen(isExact ? -31 : -10)};
        model.optimum += ParseRational(fields[Constant]).value();
        lines.push_back({std::stod(fields[Bytes]), std::move(model)});
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const Line& a, const Line& b) { return a.bytes < b.bytes; });
    std::vector<KnownModel> models;
    for (Line& entry : lines)
        models.push_back(std::move(entry.model));
    return models;
}

std::vector<KnownModel> KnownInfeasibleModels(const std::string& folder)
{
    std::vector<KnownModel> models;
    for (const std::filesystem::path& path : FilesIn(folder, ".mps"))
        models.push_back({StemOf(path), path.string(), Status::Infeasible, 0, 0});
    return models;
}

std::vector<KnownModel> KnownTextbookModels(const std::string& folder)
{
    std::vector<KnownModel> models;
    for (const std::filesystem::path& path : FilesIn(folder, ".lp"))
    {
        const std::string answer = PublishedAnswer(path);
        KnownModel model{StemOf(path), path.string(), Status::Optimal, 0, 0};
        if (answer == "unbounded")
            model.status = Status::Unbounded;
        else if (answer == "infeasible")
            model.status = Status::Infeasible;
        else
            model.optimum = ParseRational(answer).value();
        models.push_back(std::move(model));
    }
    return models;
}

std::optional<Rational> ParseRational(std::string_view text)
{
    const bool isNegative = text.starts_with('-');
    if (isNegative)
        text.remove_prefix(1);
    const std::size_t slash = text.find('/');
    const std::optional<Rational> numerator = ParseDecimal(text.substr(0, slash));
    const std::optional<Rational> denominator =
        slash == std::string_view::npos ? Rational(1) : ParseDecimal(text.substr(slash + 1));
    if (!numerator || !denominator || *denominator == 0)
        return std::nullopt;
    const Rational value = *numerator / *denominator;
    return isNegative ? Rational(-value) : value;
}

Rational RelativeDistance(const Rational& value, const Rational& known)
{
    const Rational distance = Abs(Rational(value - known));
    return known == 0 ? distance : Rational(distance / Abs(known));
}

}  // namespace nuv::test
