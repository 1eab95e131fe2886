# nuv_room(<target> SOURCES <files> [USES <targets>] [HIDES <targets>])
#
# One room of the model layer: a static library of the sources in its folder. USES is what its headers
# include, HIDES what its sources alone do. A room may use the rooms below it; a test refuses the rest.
function(nuv_room target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES;HIDES")
    add_library(${target} STATIC ${arg_SOURCES})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
    target_link_libraries(${target} PUBLIC ${arg_USES} PRIVATE ${arg_HIDES})
    nuv_warnings(${target})
    nuv_exact_floats(${target})
endfunction()
