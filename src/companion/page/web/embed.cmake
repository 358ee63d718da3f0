# Makes of the files in src/companion/page/web a source file with the page's text before and behind its data,
# so that the program carries the page inside it. Done when configuring, again after each change.
set(page_dir ${CMAKE_CURRENT_LIST_DIR})
set(page_scripts data words fates view filter reasons in_sight bars folders sums trust source_view
                 files_table next_step keys page)

# The hash of a text as a security policy wants it: SHA-256, in base 64.
function(policy_hash text result)
  set(digits ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  string(SHA256 hex "${text}")
  string(APPEND hex 00)  # 32 bytes are no multiple of the three that give four digits.
  set(encoded "")
  foreach(at RANGE 0 60 6)
    string(SUBSTRING ${hex} ${at} 6 bytes)
    foreach(shift 18 12 6 0)
      math(EXPR digit "(0x${bytes} >> ${shift}) & 63")
      string(SUBSTRING ${digits} ${digit} 1 digit)
      string(APPEND encoded ${digit})
    endforeach()
  endforeach()
  string(SUBSTRING ${encoded} 0 43 encoded)
  set(${result} "sha256-${encoded}=" PARENT_SCOPE)
endfunction()

function(read_page_file name result)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page_dir}/${name})
  file(READ ${page_dir}/${name} text)
  string(REPLACE "\r\n" "\n" text "${text}")  # A browser hashes the text with plain line ends.
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

function(embed_page output)
  read_page_file(page.html html)
  read_page_file(page.css style)
  set(script "")
  foreach(name ${page_scripts})
    read_page_file(${name}.js text)
    string(APPEND script "${text}")
  endforeach()
  foreach(part style script)
    policy_hash("${${part}}" hash)
    string(REPLACE "{{${part}-hash}}" "${hash}" html "${html}")
    string(REPLACE "{{${part}}}" "${${part}}" html "${html}")
  endforeach()
  string(FIND "${html}" "{{data}}" at)
  string(LENGTH "{{data}}" length)
  string(SUBSTRING "${html}" 0 ${at} head)
  math(EXPR at "${at} + ${length}")
  string(SUBSTRING "${html}" ${at} -1 tail)
  file(CONFIGURE OUTPUT ${output} @ONLY CONTENT [[
// Made by src/companion/page/web/embed.cmake from the files in src/companion/page/web.
#include "companion/page/page_frame.h"

std::string_view companion::PageFrame::Head() {
  return R"-page-(@head@)-page-";
}

std::string_view companion::PageFrame::Tail() {
  return R"-page-(@tail@)-page-";
}
]])
endfunction()
