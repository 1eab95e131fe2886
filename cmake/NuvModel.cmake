# The model layer: general linear programs as people write them, above the core. It may use libraries,
# which the core may not. Each room stands below those that use it.
include(cmake/NuvCommandAlone.cmake)
include(cmake/NuvRoom.cmake)
foreach(room Algebra Model Io SparseSimplex Io/Basis Certificate Vipr Exact Solve Report CInterface)
    add_subdirectory(Nuv/${room})
endforeach()

# What a user links.
add_library(nuv_model_layer INTERFACE)
add_library(Nuv::Model ALIAS nuv_model_layer)
target_link_libraries(nuv_model_layer INTERFACE nuv_c_interface nuv_report nuv_solve nuv_vipr nuv_basis_file nuv_io nuv_model)
include(cmake/NuvModelLibrary.cmake)
