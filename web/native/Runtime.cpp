// What the C++ runtime of a program for WebAssembly is reduced to. Nothing unwinds: where the model
// layer throws, which it does for want of memory and for a few wrong arguments that the TypeScript
// above does not find itself, the call is left by an exception of JavaScript's. What stood on the
// stack then is lost memory; the TypeScript puts the stack back to where it was.
#include "Host.hpp"

#include "Nuv/CInterface/Handles.hpp"

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <typeinfo>

namespace
{

/// NUV_MODELRESULT_NoMemory and NUV_MODELRESULT_Internal.
enum Reason : std::uint32_t
{
    NoMemory = 3,
    Internal = 10,
};

void* Allocate(std::size_t size)
{
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (!memory)
        HostFail(NoMemory);
    return memory;
}

}  // namespace

void* operator new(std::size_t size)
{
    return Allocate(size);
}
void* operator new[](std::size_t size)
{
    return Allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

void std::__libcpp_verbose_abort(const char* /*format*/, ...)
{
    HostFail(Internal);
}

std::chrono::steady_clock::time_point std::chrono::steady_clock::now() noexcept
{
    return time_point(duration_cast<duration>(std::chrono::duration<double>(HostSeconds())));
}

extern "C"
{
    // The compiler's own runtime was built with guards of the stack, and asks for them.
    extern const std::uintptr_t __stack_chk_guard;
    const std::uintptr_t __stack_chk_guard = 0x6E757621;

    [[noreturn]] void __stack_chk_fail()
    {
        HostFail(Internal);
    }

    _Noreturn void abort()
    {
        HostFail(Internal);
    }

    void* __cxa_allocate_exception(std::size_t size) noexcept
    {
        static std::max_align_t room[16];
        if (size > sizeof room)
            HostFail(Internal);
        return room;
    }

    [[noreturn]] void __cxa_throw(void* thrown, std::type_info* type, void (* /*destroy*/)(void*))
    {
        if (*type != typeid(nuv::c::Failure))
            HostFail(*type == typeid(std::bad_alloc) ? NoMemory : Internal);
        const auto& failure = *static_cast<const nuv::c::Failure*>(thrown);
        HostFail(static_cast<std::uint32_t>(failure.result), failure.error.code.c_str(),
                 failure.error.text.c_str(), failure.error.hint.c_str());
    }

    // Types of exceptions are told apart by their addresses alone, so that the functions of these
    // classes, which search the bases of a class, are never called.
    extern const void* const kClassType[11] asm("_ZTVN10__cxxabiv117__class_type_infoE");
    extern const void* const kDerivedType[11] asm("_ZTVN10__cxxabiv120__si_class_type_infoE");
    extern const void* const kManyBasesType[11] asm("_ZTVN10__cxxabiv121__vmi_class_type_infoE");
    const void* const kClassType[11] = {};
    const void* const kDerivedType[11] = {};
    const void* const kManyBasesType[11] = {};

    [[noreturn]] void __cxa_pure_virtual()
    {
        HostFail(Internal);
    }

    [[noreturn]] void abort_message(const char* /*format*/, ...)
    {
        HostFail(Internal);
    }

    // Destructors of what lives as long as the program: it ends with the page.
    int __cxa_atexit(void (* /*destroy*/)(void*), void* /*object*/, void* /*library*/) noexcept
    {
        return 0;
    }
}
