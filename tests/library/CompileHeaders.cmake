# cmake -DINCLUDE_DIR=... -DWORK_DIR=... "-DC_COMPILERS=...;..." "-DCXX_COMPILERS=...;..." -P CompileHeaders.cmake
#
# Each header under INCLUDE_DIR compiles alone, as the first thing that a file includes, as C11 (unless
# it is a .hpp) and as C++20, without a warning. The declarations that are included once for each element type
# (*.decl.h and the two files around them) are not for users to include, and come in through the others.
cmake_minimum_required(VERSION 3.22)

set(warnings -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
file(MAKE_DIRECTORY ${WORK_DIR})
file(GLOB headers RELATIVE ${INCLUDE_DIR} ${INCLUDE_DIR}/Nuv/Utils/*.h ${INCLUDE_DIR}/Nuv/Utils/*.hpp
     ${INCLUDE_DIR}/Nuv/Model/*.h)
list(FILTER headers EXCLUDE REGEX "\\.decl\\.h$")
list(LENGTH headers count)
if(count LESS 8)
    message(FATAL_ERROR "only ${count} headers under ${INCLUDE_DIR}: ${headers}")
endif()

function(compile compiler source)
    execute_process(
        COMMAND ${compiler} -fsyntax-only ${ARGN} ${warnings} -I${INCLUDE_DIR} ${source}
        ERROR_VARIABLE errors RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(SEND_ERROR "${compiler} ${ARGN}: ${header} does not compile alone\n${errors}")
    endif()
endfunction()

foreach(header IN LISTS headers)
    cmake_path(GET header FILENAME name)
    set(source ${WORK_DIR}/${name})
    # Twice, because a program includes it through several others.
    foreach(suffix c cpp)
        file(WRITE ${source}.${suffix} "#include \"${header}\"\n#include \"${header}\"\nint main(void);\n")
    endforeach()
    if(NOT header MATCHES "\\.hpp$")
        foreach(compiler IN LISTS C_COMPILERS)
            compile(${compiler} ${source}.c -std=c11)
        endforeach()
    endif()
    foreach(compiler IN LISTS CXX_COMPILERS)
        compile(${compiler} ${source}.cpp -std=c++20)
    endforeach()
endforeach()
message(STATUS "${count} headers compile alone")

# Those of the model layer, as C++20 and without a macro of the library's build. What they include is the
# standard library: whoever uses them needs neither Boost nor GMP.
file(GLOB_RECURSE headers RELATIVE ${INCLUDE_DIR} ${INCLUDE_DIR}/Nuv/*.hpp)
list(FILTER headers EXCLUDE REGEX "^Nuv/(Utils|Templates)/")
list(LENGTH headers count)
if(count LESS 20)
    message(FATAL_ERROR "only ${count} headers of the model layer under ${INCLUDE_DIR}: ${headers}")
endif()
list(GET CXX_COMPILERS 0 compiler)
foreach(header IN LISTS headers)
    cmake_path(GET header FILENAME name)
    set(source ${WORK_DIR}/${name})
    file(WRITE ${source}.cpp "#include \"${header}\"\n#include \"${header}\"\nint main() {}\n")
    compile(${compiler} ${source}.cpp -std=c++20 -MD -MF ${source}.d)
    file(READ ${source}.d includes)
    if(includes MATCHES "/(boost|gmp|gmpxx|fmt|zlib|nlohmann)[./][^ ]*")
        message(SEND_ERROR "${header} includes ${CMAKE_MATCH_0}")
    endif()
endforeach()
message(STATUS "${count} headers of the model layer compile alone")
