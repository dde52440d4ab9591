# Embeds text files into a C++ source, each as one std::string_view constant.
#
#   kelvinbar_embed_texts(<out-var> NAMESPACE <namespace> <identifier>=<file> …)
#
# Sets <out-var> to the generated source. The bytes of the file are embedded unchanged.
function(kelvinbar_embed_texts out_var)
  cmake_parse_arguments(PARSE_ARGV 1 embed "" "NAMESPACE" "")
  set(body "")
  foreach(item IN LISTS embed_UNPARSED_ARGUMENTS)
    string(REGEX MATCH "^([^=]+)=(.+)$" matched "${item}")
    set(identifier "${CMAKE_MATCH_1}")
    set(file "${CMAKE_MATCH_2}")
    file(READ "${file}" hex HEX)
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "\\\\x\\1" escaped "${hex}")
    # Short literals keep the generated source readable and within the limits of all compilers.
    string(REGEX REPLACE "((\\\\x[0-9a-f][0-9a-f])(\\\\x[0-9a-f][0-9a-f])?(\\\\x[0-9a-f][0-9a-f])?(\\\\x[0-9a-f][0-9a-f])?(\\\\x[0-9a-f][0-9a-f])?(\\\\x[0-9a-f][0-9a-f])?(\\\\x[0-9a-f][0-9a-f])?(\\\\x[0-9a-f][0-9a-f])?)"
      "    \"\\1\"\n" lines "${escaped}")
    file(SIZE "${file}" size)
    string(APPEND body "extern const std::string_view ${identifier};\nconst std::string_view ${identifier}(\n${lines}    , ${size});\n\n")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
  endforeach()
  set(source "${CMAKE_CURRENT_BINARY_DIR}/EmbeddedTexts.cpp")
  file(CONFIGURE OUTPUT "${source}" @ONLY CONTENT
"#include <string_view>

namespace ${embed_NAMESPACE} {

${body}} // namespace ${embed_NAMESPACE}
")
  set(${out_var} "${source}" PARENT_SCOPE)
endfunction()
