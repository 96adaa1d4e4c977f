# Makes a C++ source that holds text files, so that a program carries them in itself.
#
#   cmake -DOUTPUT=embedded.cpp -DHEADER=path/embedded.h -DFILES=name=path;name=path -P embed_texts.cmake
#
# Each file becomes `const std::string_view embedded::name`. A file that holds a script may be named
# as `hash:name=path`: then `embedded::nameHash` is its SHA-256 in base64, as a content security
# policy wants it. Runs on the machine that builds, whatever is built for.

set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")

# Base64 of 32 bytes in hexadecimal: 21 groups of three bytes, then 2 bytes with a "=".
function(base64_of_sha256 hex result)
  set(text "")
  string(APPEND hex "00")
  foreach(group RANGE 10)
    math(EXPR at "${group} * 6")
    string(SUBSTRING "${hex}" ${at} 6 digits)
    foreach(shift IN ITEMS 18 12 6 0)
      math(EXPR index "(0x${digits} >> ${shift}) & 63")
      string(SUBSTRING "${alphabet}" ${index} 1 letter)
      string(APPEND text "${letter}")
    endforeach()
  endforeach()
  string(SUBSTRING "${text}" 0 43 text)
  set(${result} "${text}=" PARENT_SCOPE)
endfunction()

set(source "// Made by embed_texts.cmake.\n#include \"${HEADER}\"\n\nnamespace embedded {\n")
foreach(item IN LISTS FILES)
  if(NOT item MATCHES "^(hash:)?([A-Za-z]+)=(.+)$")
    message(FATAL_ERROR "not name=path: ${item}")
  endif()
  set(hashed "${CMAKE_MATCH_1}")
  set(name "${CMAKE_MATCH_2}")
  set(path "${CMAKE_MATCH_3}")
  file(READ "${path}" text)
  if(text MATCHES "\\)embedded\"")
    message(FATAL_ERROR "${path}: holds what ends a raw string")
  endif()
  string(APPEND source
    "const std::string_view ${name} = R\"embedded(${text})embedded\";\n")
  if(hashed)
    file(SHA256 "${path}" hex)
    base64_of_sha256("${hex}" base64)
    string(APPEND source "const std::string_view ${name}Hash = \"${base64}\";\n")
  endif()
endforeach()
string(APPEND source "} // namespace embedded\n")
file(WRITE "${OUTPUT}" "${source}")
