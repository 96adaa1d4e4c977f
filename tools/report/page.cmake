# The page's skeleton, style sheets and code, which the library carries in itself.
set(texts page=page.html index=index.html hash:indexCode=index.js
          colours=colours.css picture=picture.css style=style.css)
list(TRANSFORM texts REPLACE "=" "=${CMAKE_CURRENT_LIST_DIR}/page/" OUTPUT_VARIABLE text_files)
list(TRANSFORM text_files REPLACE "^[^=]*=" "" OUTPUT_VARIABLE text_paths)
add_custom_command(
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/embedded.cpp
  COMMAND ${CMAKE_COMMAND} -DOUTPUT=${CMAKE_CURRENT_BINARY_DIR}/embedded.cpp
          -DHEADER=tools/report/embedded.h "-DFILES=${text_files}"
          -P ${CMAKE_CURRENT_LIST_DIR}/embed_texts.cmake
  DEPENDS ${CMAKE_CURRENT_LIST_DIR}/embed_texts.cmake ${text_paths}
  VERBATIM)

