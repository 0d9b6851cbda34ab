# Layout of the installed plug-in: the program, the device library it finds by its RUNPATH, and the staging folder
# that the program itself never creates. Put the host's own device library in lib/ in place of the simulated one.
install(TARGETS zfcesxcli RUNTIME DESTINATION bin)
install(FILES ${ZFC_README} DESTINATION bin)  # where the help sends its reader
install(DIRECTORY ${CMAKE_BINARY_DIR}/share/ DESTINATION share)
install(TARGETS torpifconly LIBRARY DESTINATION lib COMPONENT simulator)
install(DIRECTORY DESTINATION tmp)
