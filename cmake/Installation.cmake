# What `cmake --install` puts where. The package for find_package stands in lib/cmake/zelq; like the libraries it finds
# everything relative to itself.

include(CMakePackageConfigHelpers)

# 0755 whatever the umask: see InspectorLibraries.cmake.
set(mode OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

install(TARGETS zelq DESTINATION bin)
install(TARGETS Platform Evaluator EXPORT zelq DESTINATION lib PERMISSIONS ${mode} INCLUDES DESTINATION include)
install(TARGETS CarbonZelqInspectors DESTINATION lib/Inspectors PERMISSIONS ${mode})
install(DIRECTORY evaluator/include/ platform/include/ DESTINATION include)

set(package lib/cmake/zelq)
install(EXPORT zelq NAMESPACE zelq:: FILE zelq-targets.cmake DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zelq-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/zelq-config.cmake cmake/InspectorLibraries.cmake
  ${PROJECT_BINARY_DIR}/zelq-config-version.cmake DESTINATION ${package})
