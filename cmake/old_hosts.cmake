# Links an executable for hosts with an old C library, from version 2.17 on, and without any C++ runtime: against the
# stand-in C library, with the executable's own allocation, start and replacements. docs/old-hosts.md has the reasons.
# Its sources are built without exceptions.
set(old_host_sources ${PROJECT_SOURCE_DIR}/src/runtime/executable)

find_program(ELFEDIT elfedit REQUIRED)

function(zfc_link_for_old_hosts target)
  add_dependencies(${target} old_c_library)
  target_sources(${target} PRIVATE
    ${old_host_sources}/allocation.cpp
    ${old_host_sources}/late_functions.cpp
    ${old_host_sources}/no_exceptions.cpp
    ${old_host_sources}/start.cpp)
  target_link_libraries(${target} PRIVATE zfc_runtime)
  target_compile_options(${target} PRIVATE -fno-exceptions -ffunction-sections)
  target_link_directories(${target} BEFORE PRIVATE ${OLD_C_LIBRARY_DIR})
  target_link_options(${target} PRIVATE
    -static-libstdc++ -static-libgcc -pie LINKER:--as-needed LINKER:--gc-sections
    LINKER:--wrap=__libc_start_main
    LINKER:--hash-style=both
    # The device library may follow a newer C library than the executable.
    LINKER:--allow-shlib-undefined)
  # The compiler marks a file with inline variables as one for GNU systems only. Nothing in its dynamic part is.
  add_custom_command(TARGET ${target} POST_BUILD COMMAND ${ELFEDIT} --output-osabi none $<TARGET_FILE:${target}> VERBATIM)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${OLD_C_LIBRARY_DIR}/libc.so)
endfunction()
