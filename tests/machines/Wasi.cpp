// What the C++ library for WebAssembly leaves to whoever builds without exceptions: a throw ends
// the program. The compiler's own runtime was built with guards of the stack, and asks for them by
// these names.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <typeinfo>

extern "C"
{
    extern const std::uintptr_t __stack_chk_guard;
    const std::uintptr_t __stack_chk_guard = 0x6E757621;

    [[noreturn]] void __stack_chk_fail()
    {
        std::abort();
    }

    void* __cxa_allocate_exception(std::size_t /*size*/) noexcept
    {
        std::abort();
    }

    [[noreturn]] void __cxa_throw(void* /*thrown*/, std::type_info* /*type*/,
                                  void (* /*destroy*/)(void*))
    {
        std::abort();
    }
}
