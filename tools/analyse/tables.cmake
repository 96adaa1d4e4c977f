# Makes ${CMAKE_CURRENT_BINARY_DIR}/tables.cpp, the tables of the database as texts of the program.
set(tables shiftStatistics=Pro.cs.tab neighbourStatistics=Pro.seq.tab callRules=calls.tab
           isotopeShifts=isoadj.tab randomCoil=randcoil.tab randomCoilAdjustments=rcadj.tab
           nextResidue=rcnext.tab previousResidue=rcprev.tab referencingModel=reref.tab
           limits=sslimit.tab)
list(TRANSFORM tables REPLACE "=" "=${PROJECT_SOURCE_DIR}/tab/")
list(TRANSFORM tables REPLACE "^[^=]*=" "" OUTPUT_VARIABLE table_paths)
set(embed ${PROJECT_SOURCE_DIR}/tools/report/embed_texts.cmake)
add_custom_command(
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/tables.cpp
  COMMAND ${CMAKE_COMMAND} -DOUTPUT=${CMAKE_CURRENT_BINARY_DIR}/tables.cpp
          -DHEADER=tools/analyse/tables.h "-DFILES=${tables}" -P ${embed}
  DEPENDS ${embed} ${table_paths}
  VERBATIM)

