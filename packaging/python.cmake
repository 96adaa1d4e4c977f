# The Python module as a Debian package of its own, python3-citrans. `cmake --install` and the
# archive leave it out: outside of Debian's Python the wheel is what to install.

set(python_package lib/python3/dist-packages/citrans)
set(python_documents share/doc/python3-citrans)
install(TARGETS citrans_python_core LIBRARY DESTINATION ${python_package}
        COMPONENT python EXCLUDE_FROM_ALL)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/python/citrans/ DESTINATION ${python_package}
        COMPONENT python EXCLUDE_FROM_ALL
        FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN py.typed PATTERN __pycache__ EXCLUDE)
set(copyright ${PROJECT_SOURCE_DIR}/LICENSE)
if(EXISTS ${PROJECT_SOURCE_DIR}/NOTICES) # then made of both, for all packages
  set(copyright ${CMAKE_CURRENT_BINARY_DIR}/copyright)
endif()
install(FILES ${copyright} DESTINATION ${python_documents} RENAME copyright
        COMPONENT python EXCLUDE_FROM_ALL)
install(FILES ${PROJECT_SOURCE_DIR}/docs/python.md DESTINATION ${python_documents}
        COMPONENT python EXCLUDE_FROM_ALL)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz DESTINATION ${python_documents}
        COMPONENT python EXCLUDE_FROM_ALL)

if(NOT CPACK_COMPONENTS_ALL)
  set(CPACK_COMPONENTS_ALL Unspecified)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_NAME ${CPACK_PACKAGE_NAME})
  set(CPACK_COMPONENT_UNSPECIFIED_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
endif()
list(APPEND CPACK_COMPONENTS_ALL python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-citrans)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
  "proline cis/trans prediction from NMR chemical shifts, for Python
Predicts from depositions, tables and structures in memory, reads what a
call rests on, and makes the report page, without files and processes.")
# The native part is made for one version of the interpreter.
math(EXPR next "${CITRANS_PYTHON_MINOR} + 1")
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3 (>= 3.${CITRANS_PYTHON_MINOR}), python3 (<< 3.${next})")
