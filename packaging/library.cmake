# The core as a library: what find_package(citrans) needs, and a Debian package of its own,
# libcitrans-dev. The headers name each other from the folder that holds app/, table/ and the
# others, and users name <citrans/citrans.h>; both folders are on the include path.

include(CMakePackageConfigHelpers)
set(library_package lib/cmake/citrans)
set(library_documents share/doc/libcitrans-dev)

target_sources(citrans_core PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES
  ${PROJECT_SOURCE_DIR}/app/citrans.h
  ${PROJECT_SOURCE_DIR}/app/settings.h
  ${PROJECT_SOURCE_DIR}/predict/prediction.h
  ${PROJECT_SOURCE_DIR}/shifts/referencing.h
  ${PROJECT_SOURCE_DIR}/shifts/shift_check.h
  ${PROJECT_SOURCE_DIR}/shifts/shift_values.h
  ${PROJECT_SOURCE_DIR}/structure/cordata.h
  ${PROJECT_SOURCE_DIR}/structure/pdb.h
  ${PROJECT_SOURCE_DIR}/table/gdb.h
  ${PROJECT_SOURCE_DIR}/table/number.h
  ${PROJECT_SOURCE_DIR}/table/row_store.h
  ${PROJECT_SOURCE_DIR}/table/run_end.h
  ${PROJECT_SOURCE_DIR}/table/text_pool.h
  ${PROJECT_SOURCE_DIR}/table/text_sink.h
)
target_include_directories(citrans_core INTERFACE $<INSTALL_INTERFACE:include>)
set_target_properties(citrans_core PROPERTIES EXPORT_NAME core)

install(TARGETS citrans_core EXPORT citransTargets
        ARCHIVE DESTINATION lib COMPONENT dev
        FILE_SET HEADERS DESTINATION include/citrans COMPONENT dev)
install(FILES citrans.h DESTINATION include/citrans COMPONENT dev)
install(EXPORT citransTargets NAMESPACE citrans:: DESTINATION ${library_package} COMPONENT dev)

set(citrans_tables ${CMAKE_INSTALL_DATADIR}/citrans/tab)
configure_package_config_file(citransConfig.cmake.in citransConfig.cmake
  INSTALL_DESTINATION ${library_package} PATH_VARS citrans_tables
  NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(citransConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/citransConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/citransConfigVersion.cmake
        DESTINATION ${library_package} COMPONENT dev)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
        DESTINATION ${library_documents} COMPONENT dev)

list(APPEND CPACK_COMPONENTS_ALL dev)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libcitrans-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "citrans (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEV_DESCRIPTION
  "proline cis/trans prediction from NMR chemical shifts, library
The prediction for other programs: from tables and structures in memory, as
often as wanted, without files, output or processes. For CMake it is the
package citrans with the target citrans::core.")
