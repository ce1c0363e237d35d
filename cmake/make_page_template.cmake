# Writes the page as C++: cmake -DINDEX= -DSTYLE= -DSCRIPT= -DLICENSE= -DOUTPUT= -P this file.
#
# Marks of index.html: /*style*/, /*script*/ and <!--licenses--> are replaced here; those with the
# name of the model and its data stay for the program.
file(READ ${INDEX} page)
file(READ ${STYLE} style)
file(READ ${SCRIPT} script)
file(READ ${LICENSE} license)
string(REPLACE "/*style*/" "${style}" page "${page}")
string(
  REPLACE "<!--licenses-->"
          "<!--\nThis page contains three.js (https://threejs.org), under this licence:\n\n${license}-->"
          page "${page}")
# The script last: it may hold whatever looks like a mark.
string(REPLACE "/*script*/" "${script}" page "${page}")

# In pieces, which stand one behind another: compilers take long ones, but not all of any length.
set(literals)
string(LENGTH "${page}" length)
set(at 0)
while(at LESS length)
  string(SUBSTRING "${page}" ${at} 16000 piece)
  # No cut within a character of several bytes.
  string(REGEX REPLACE "[^\t\n\r -~]+$" "" piece "${piece}")
  string(LENGTH "${piece}" step)
  if(step EQUAL 0)
    message(FATAL_ERROR "The page has 16000 bytes that are not ASCII one behind another.")
  endif()
  string(APPEND literals "\n    R\"kvxpage(${piece})kvxpage\"")
  math(EXPR at "${at} + ${step}")
endwhile()
# All compilers in use take more than the 64 kB that the standard asks for.
file(WRITE ${OUTPUT}
     "#include \"view/page_template.h\"\n\n#pragma GCC diagnostic ignored \"-Woverlength-strings\"\n\n"
     "const char* const kvx::PageTemplate =${literals};\n\n"
     "const char* const kvx::PageLicense =\n    R\"kvxpage(${license})kvxpage\";\n")
