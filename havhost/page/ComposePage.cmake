# Writes the page of the HTML report as C++: the text before the data and the text after it.
#
#   cmake -D FOLDER=... -D LIBRARY=... -D LICENCE=... -D OUTPUT=... -P ComposePage.cmake
#
# Style and scripts stand in the page itself, and the page's policy names their hashes: nothing
# else can run or be loaded there, whatever the data holds.
cmake_minimum_required(VERSION 3.22)

# read_text(RESULT FILE): with the line ends that a browser hashes.
function(read_text result file)
  file(READ "${file}" text)
  string(REPLACE "\r" "" text "${text}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# hash_source(RESULT TEXT): TEXT's hash as a policy names it.
function(hash_source result text)
  string(SHA256 hex "${text}")
  # 33 bytes make whole groups of four characters; the last one stands for the byte too many.
  string(APPEND hex "00")
  set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  set(base64 "")
  foreach(at RANGE 0 60 6)
    string(SUBSTRING "${hex}" ${at} 6 group)
    foreach(shift 18 12 6 0)
      math(EXPR digit "(0x${group} >> ${shift}) & 63")
      string(SUBSTRING "${digits}" ${digit} 1 character)
      string(APPEND base64 "${character}")
    endforeach()
  endforeach()
  string(REGEX REPLACE ".$" "=" base64 "${base64}")
  set(${result} "'sha256-${base64}'" PARENT_SCOPE)
endfunction()

# append_bytes(NAME TEXT): adds TEXT to `cpp` as the variable NAME. An array, because string
# literals of this length are not portable.
function(append_bytes name text)
  string(HEX "${text}" hex)
  string(LENGTH "${hex}" digits)
  math(EXPR size "${digits} / 2")
  string(REGEX REPLACE "(................................)" "\\1\n" hex "${hex}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," hex "${hex}")
  string(APPEND cpp "static const unsigned char ${name}Bytes[] = {\n${hex}};\n"
    "const std::string_view ${name}(reinterpret_cast<const char*>(${name}Bytes), ${size});\n\n")
  set(cpp "${cpp}" PARENT_SCOPE)
endfunction()

read_text(page "${FOLDER}/page.html")
read_text(style "${FOLDER}/page.css")
read_text(licence "${LICENCE}")
read_text(library "${LIBRARY}")
string(REPLACE "*/" "* /" licence "${licence}")
set(library "/*\n${licence}*/\n${library}")

set(script "(function () {\n'use strict';\n")
foreach(part model dom objects table tree charts graph search main)
  read_text(text "${FOLDER}/${part}.js")
  string(APPEND script "${text}")
endforeach()
string(APPEND script "})();\n")

foreach(text "${style}" "${library}" "${script}")
  if(text MATCHES "</[Ss]|<!--")
    message(FATAL_ERROR "a script or style of the report would end early: ${CMAKE_MATCH_0}")
  endif()
endforeach()

hash_source(style_hash "${style}")
hash_source(library_hash "${library}")
hash_source(script_hash "${script}")
string(CONCAT policy "default-src 'none'; script-src ${library_hash} ${script_hash}; "
  "style-src ${style_hash}; img-src data:; base-uri 'none'; form-action 'none'")

string(REPLACE "@POLICY@" "${policy}" page "${page}")
string(REPLACE "@STYLE@" "${style}" page "${page}")
string(FIND "${page}" "@DATA@" data)
string(SUBSTRING "${page}" 0 ${data} before)
math(EXPR data "${data} + 6")
string(SUBSTRING "${page}" ${data} -1 after)
string(REPLACE "@LIBRARY@" "${library}" after "${after}")
string(REPLACE "@SCRIPT@" "${script}" after "${after}")

set(cpp "#include \"havhost/report/HtmlPage.h\"\n\nnamespace havhost {\n\n")
append_bytes(kHtmlBeforeData "${before}")
append_bytes(kHtmlAfterData "${after}")
append_bytes(kHtmlPolicy "${policy}")
string(APPEND cpp "}  // namespace havhost\n")
file(WRITE "${OUTPUT}" "${cpp}")
