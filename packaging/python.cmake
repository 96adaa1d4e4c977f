# The Python module as a Debian package of its own, python3-citrans. `cmake --install` and the
# archive leave it out: outside of Debian's Python the wheel is what to install.

set(python_package lib/python3/dist-packages/citrans)
set(python_documents share/doc/python3-citrans)
install(TARGETS citrans_python_core LIBRARY DESTINATION ${python_package}
        COMPONENT python EXCLUDE_FROM_ALL)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/python/citrans/ DESTINATION ${python_package}
        COMPONENT python EXCLUDE_FROM_ALL
        FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN py.typed PATTERN __pycache__ EXCLUDE)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright DESTINATION ${python_documents}
        COMPONENT python EXCLUDE_FROM_ALL)
install(FILES ${PROJECT_SOURCE_DIR}/docs/python.md DESTINATION ${python_documents}
        COMPONENT python EXCLUDE_FROM_ALL)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz DESTINATION ${python_documents}
        COMPONENT python EXCLUDE_FROM_ALL)

list(APPEND CPACK_COMPONENTS_ALL python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-citrans)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
  "The module citrans for Python: predicts from depositions, tables and
structures in memory, tells what a call rests on, and makes the report page,
without files and other processes.")
# The native part is made for one version of the interpreter.
math(EXPR next "${CITRANS_PYTHON_MINOR} + 1")
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3 (>= 3.${CITRANS_PYTHON_MINOR}), python3 (<< 3.${next})")
