/// Reading in large pieces, writing in one, and unpacking with zlib where the first two bytes ask
/// for it.
#include "Nuv/Io/TextFile.hpp"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace nuv
{
namespace
{

constexpr std::size_t kPiece = std::size_t{1} << 20;
/// What a string can hold with room to grow, where that is less than 4 GiB.
constexpr std::uint64_t kLargestText =
    std::min(std::uint64_t{1} << 32, std::uint64_t{SIZE_MAX} / 4 + 1);

struct CloseFile
{
    void operator()(std::FILE* file) const noexcept
    {
        // Nothing was written, so nothing can be lost.
        (void)std::fclose(file);
    }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

Error FileError(std::string code, const std::string& path, std::string text, std::string hint)
{
    return {std::move(code), std::move(text), std::move(hint), DisplayName(path), 0, 0};
}

Error OpeningError(const std::string& path, int reason)
{
    if (reason == ENOENT || reason == ENOTDIR)
        return FileError("file.missing", path, "there is no such file", "check the path");
    if (reason == EACCES || reason == EPERM)
        return FileError("file.permission", path, "no permission to read the file",
                         "check its mode and owner");
    if (reason == EISDIR)
        return FileError("file.directory", path, "this is a directory", "name a file in it");
    return FileError("file.unreadable", path, std::strerror(reason), {});
}

Error TooLarge(const std::string& path)
{
    return FileError("file.too-large", path,
                     "the text is larger than " + std::to_string(kLargestText >> 30) + " GiB",
                     "split the model");
}

/// How many bytes are still to come, where that can be known; 0 for a pipe.
std::size_t ExpectedSize(std::FILE* file)
{
    const long here = std::ftell(file);
    if (here < 0 || std::fseek(file, 0, SEEK_END) != 0)
        return 0;
    const long end = std::ftell(file);
    if (std::fseek(file, here, SEEK_SET) != 0 || end < here)
        return 0;
    const auto size = static_cast<std::uint64_t>(end - here);
    // The end of a directory is no size.
    return size < kLargestText ? static_cast<std::size_t>(size) : 0;
}

Result<std::string> ReadAll(std::FILE* file, const std::string& path)
{
    std::string text;
    text.reserve(ExpectedSize(file) + 1);
    for (;;)
    {
        const std::size_t had = text.size();
        // One byte beyond the expected size shows the end of the file without another growth.
        const std::size_t room =
            text.capacity() > had ? std::min(text.capacity() - had, 64 * kPiece) : kPiece;
        text.resize(had + room);
        const std::size_t got = std::fread(text.data() + had, 1, room, file);
        text.resize(had + got);
        if (text.size() > kLargestText)
            return TooLarge(path);
        if (got == room)
            continue;
        if (std::ferror(file) != 0)
            return OpeningError(path, errno);
        return text;
    }
}

/// Whether the text has two bytes for a letter: with a mark at its beginning, or else with a zero
/// byte beside each of the first two letters.
bool IsUtf16(std::string_view text) noexcept
{
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        return true;
    const auto hasZero = [&](std::size_t at) { return text[at] == '\0' && text[at + 2] == '\0'; };
    return text.size() >= 4 && hasZero(0) != hasZero(1);
}

struct Inflater
{
    z_stream stream{};
    bool ready = false;

    Inflater()
    {
        // 15 + 16: the largest window, and the gzip wrapping only.
        ready = inflateInit2(&stream, 15 + 16) == Z_OK;
    }
    ~Inflater()
    {
        if (ready)
            (void)inflateEnd(&stream);
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
};

/// Unpacks all members of a gzip file.
Result<std::string> Unpack(const std::string& packed, const std::string& path)
{
    const Error damaged =
        FileError("file.damaged", path, "the compressed file is damaged or cut off",
                  "make it again, or unpack it first");
    Inflater inflater;
    z_stream& stream = inflater.stream;
    if (!inflater.ready)
        return FileError("file.unreadable", path, "no memory to unpack the file", {});
    std::string text;
    std::size_t taken = 0;
    for (;;)
    {
        const std::size_t had = text.size();
        text.resize(had + std::max(kPiece, had / 2));
        const std::size_t input = std::min(packed.size() - taken, kPiece);
        const std::size_t output = std::min(text.size() - had, std::size_t{1} << 30);
        stream.next_in = reinterpret_cast<const Bytef*>(packed.data() + taken);
        stream.avail_in = static_cast<uInt>(input);
        stream.next_out = reinterpret_cast<Bytef*>(text.data() + had);
        stream.avail_out = static_cast<uInt>(output);
        const int result = inflate(&stream, Z_NO_FLUSH);
        taken += input - stream.avail_in;
        text.resize(had + output - stream.avail_out);
        if (text.size() > kLargestText)
            return TooLarge(path);
        if (result == Z_STREAM_END)
        {
            if (taken == packed.size())
                return text;
            if (inflateReset(&stream) != Z_OK)
                return damaged;
        }
        else if (result != Z_OK)
        {
            return damaged;
        }
    }
}

bool WritePlain(const std::string& path, std::string_view text)
{
    std::FILE* const file = path == "-" ? stdout : std::fopen(path.c_str(), "wb");
    const bool isWritten = file != nullptr &&
                           std::fwrite(text.data(), 1, text.size(), file) == text.size() &&
                           std::fflush(file) == 0;
    // Closing can fail too, where the disk is full.
    return (file == nullptr || file == stdout || std::fclose(file) == 0) && isWritten;
}

bool WritePacked(const std::string& path, std::string_view text)
{
    const gzFile file = gzopen(path.c_str(), "wb");
    if (!file)
        return false;
    bool isWritten = true;
    while (isWritten && !text.empty())
    {
        const auto size = static_cast<unsigned>(std::min(text.size(), kPiece));
        isWritten = gzwrite(file, text.data(), size) == static_cast<int>(size);
        text.remove_prefix(size);
    }
    return gzclose(file) == Z_OK && isWritten;
}

}  // namespace

std::string DisplayName(const std::string& path)
{
    return path == "-" ? "<stdin>" : path;
}

Result<std::string> ReadTextFile(const std::string& path)
{
    File opened;
    if (path != "-")
    {
        opened.reset(std::fopen(path.c_str(), "rb"));
        if (!opened)
            return OpeningError(path, errno);
    }
    Result<std::string> bytes = ReadAll(opened ? opened.get() : stdin, path);
    if (!bytes)
        return bytes;
    Result<std::string> text = Unpacked(std::move(*bytes), path);
    if (text && IsUtf16(*text))
        return FileError("file.utf-16", path, "this is UTF-16 text", "save the file as UTF-8");
    return text;
}

Result<std::string> Unpacked(std::string bytes, const std::string& path)
{
    const bool isPacked = std::string_view(bytes).starts_with("\x1F\x8B");
    return isPacked ? Unpack(bytes, path) : Result<std::string>(std::move(bytes));
}

std::optional<Error> WriteTextFile(const std::string& path, std::string_view text)
{
    errno = 0;
    if (path.ends_with(".gz") ? WritePacked(path, text) : WritePlain(path, text))
        return std::nullopt;
    return Error{"file.unwritable",
                 std::string("the file cannot be written: ") + std::strerror(errno),
                 "check the path, its folder and the room on the disk",
                 path == "-" ? "<stdout>" : path,
                 0,
                 0};
}

}  // namespace nuv
