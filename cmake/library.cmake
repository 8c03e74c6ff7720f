# The library: once as objects, from which the shared library is linked and the tests' static one.

file(GLOB_RECURSE korvos_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.cpp)
list(FILTER korvos_sources EXCLUDE REGEX "_test\\.cpp$")

add_library(korvos_objects OBJECT ${korvos_sources})
target_include_directories(korvos_objects PUBLIC ${PROJECT_SOURCE_DIR}/include PRIVATE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(korvos_objects PRIVATE korvos_numbers korvos_warnings)
target_compile_options(
  korvos_objects PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics
                         -fvisibility-inlines-hidden> -fvisibility=hidden -fno-semantic-interposition)
set_target_properties(korvos_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)

# What the library exports is what its headers declare.
file(GLOB_RECURSE korvos_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
set(version_script ${PROJECT_BINARY_DIR}/korvos.map)
add_custom_command(
  OUTPUT ${version_script}
  COMMAND sh ${PROJECT_SOURCE_DIR}/tools/version_script.sh ${PROJECT_SOURCE_DIR}/include > ${version_script}
  DEPENDS ${korvos_headers} ${PROJECT_SOURCE_DIR}/tools/version_script.sh ${PROJECT_SOURCE_DIR}/tools/declared_names.sh
  VERBATIM)
add_custom_target(korvos_map DEPENDS ${version_script})

add_library(korvos SHARED $<TARGET_OBJECTS:korvos_objects>)
add_library(korvos::korvos ALIAS korvos)
add_dependencies(korvos korvos_map)
target_include_directories(korvos INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(korvos PRIVATE m)
# Linked as C: nothing of the C++ runtime is needed, and the link fails if that changes.
set_target_properties(
  korvos PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINKER_LANGUAGE C
                    LINK_DEPENDS ${version_script})
target_link_options(korvos PRIVATE -Wl,--version-script=${version_script} -Wl,-Bsymbolic-functions)
if(NOT KORVOS_SANITIZE AND NOT KORVOS_COVERAGE)
  target_link_options(korvos PRIVATE -Wl,-z,defs)
endif()

# For tests, fuzzers and benchmarks, which reach inside.
add_library(korvos_static STATIC $<TARGET_OBJECTS:korvos_objects>)
target_include_directories(korvos_static PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(korvos_static PUBLIC m korvos_numbers)
