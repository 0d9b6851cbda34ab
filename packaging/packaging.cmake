# What is installed, and the packages made of it. docs/packages.md has the layout and the reasons.
#
# Two components. "program" is all that an administrator needs, and holds no device library: the host's own goes into
# lib/, which the executable's RUNPATH names. "lab" is installed when asked for by name only, in a folder of its own:
# the simulated device library must never take the place of the real one by accident.
set(program_commands zfcesxcli zfc-json zfc-snapshot)
set(lab_parts zfc-lab torpifconly)

# Each part of a package writes down what it was linked from, for the bill of materials.
set(link_maps ${PROJECT_BINARY_DIR}/packaging/maps)
file(MAKE_DIRECTORY ${link_maps})
foreach(part IN LISTS program_commands lab_parts)
  if(TARGET ${part})
    list(APPEND packaged_parts ${part})
    target_link_options(${part} PRIVATE LINKER:-Map=${link_maps}/$<TARGET_FILE_NAME:${part}>.map)
  endif()
endforeach()

foreach(command IN LISTS program_commands)
  if(TARGET ${command})
    install(TARGETS ${command} RUNTIME DESTINATION bin COMPONENT program)
  endif()
endforeach()
# Where the help of the program sends its reader.
if(NOT ZFC_README)
  set(ZFC_README ${PROJECT_SOURCE_DIR}/packaging/ZFC_ESXCLI_Readme.txt)
endif()
install(FILES ${ZFC_README} DESTINATION bin COMPONENT program)
# The program never creates the staging folder. Only its owner, root, can read or stage settings: they name boot targets.
install(DIRECTORY DESTINATION tmp COMPONENT program DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
# Pages, completion, descriptor and schemas that the build makes; the lab's pages go with the lab.
foreach(component program lab)
  if(component STREQUAL lab)
    set(only_by_name EXCLUDE_FROM_ALL)
  endif()
  install(CODE "set(made [==[${PROJECT_BINARY_DIR}/share]==])\nset(component ${component})" COMPONENT ${component} ${only_by_name})
  install(SCRIPT packaging/install_made.cmake COMPONENT ${component} ${only_by_name})
endforeach()
unset(only_by_name)

install(TARGETS zfc-lab RUNTIME DESTINATION lab/bin COMPONENT lab EXCLUDE_FROM_ALL)
install(TARGETS torpifconly LIBRARY DESTINATION lab/lib COMPONENT lab EXCLUDE_FROM_ALL)
# `zfc-lab run` and `zfc-lab snapshot` start the programs beside it.
foreach(command zfcesxcli zfc-snapshot)
  file(CREATE_LINK ../../bin/${command} ${PROJECT_BINARY_DIR}/packaging/${command} SYMBOLIC)
  install(FILES ${PROJECT_BINARY_DIR}/packaging/${command} DESTINATION lab/bin COMPONENT lab EXCLUDE_FROM_ALL)
endforeach()
install(DIRECTORY examples DESTINATION lab COMPONENT lab EXCLUDE_FROM_ALL PATTERN __pycache__ EXCLUDE)
install(FILES docs/lab-host.md DESTINATION lab COMPONENT lab EXCLUDE_FROM_ALL)

# Each installed component has a list of its files, by which the removal finds them.
foreach(component program lab)
  if(component STREQUAL lab)
    set(only_by_name EXCLUDE_FROM_ALL)
    set(list lab/.installed)
  else()
    set(list .installed)
  endif()
  install(CODE "set(list ${list})" COMPONENT ${component} ${only_by_name})
  install(SCRIPT packaging/list_installed.cmake COMPONENT ${component} ${only_by_name})
endforeach()
unset(only_by_name)
add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -D PREFIX=${CMAKE_INSTALL_PREFIX} -P ${PROJECT_SOURCE_DIR}/packaging/uninstall.cmake
  VERBATIM)

if(NOT ZFC_SANITIZE)
  add_custom_target(packages
    COMMAND ${PROJECT_SOURCE_DIR}/packaging/build-packages ${PROJECT_BINARY_DIR}
            ${PROJECT_BINARY_DIR}/packages ${PROJECT_VERSION}
    VERBATIM USES_TERMINAL)
  add_dependencies(packages ${packaged_parts})
  if(TARGET reference)
    add_dependencies(packages reference)
  endif()
endif()
