# Writes the manual's page to OUTPUT and its PICTURES into the folder images beside it. A raw tag in
# the text, as of an anchor, goes into the page as it is.
execute_process(
    COMMAND ${CMARK_GFM} --unsafe --extension table ${SOURCE}/manual.ja.md
    OUTPUT_VARIABLE TEXT COMMAND_ERROR_IS_FATAL ANY)
# Japanese has no blanks: where a line of the text ends between two of its characters, a browser would
# show one. (The classes are of bytes: any but those of ASCII.)
string(REGEX REPLACE "([^ -~\n])\n([^ -~\n])" "\\1\\2" TEXT "${TEXT}")
file(READ ${SOURCE}/manual.css STYLE)
get_filename_component(folder ${OUTPUT} DIRECTORY)
configure_file(${SOURCE}/manual.html.in ${OUTPUT} @ONLY NEWLINE_STYLE LF)
file(REMOVE_RECURSE ${folder}/images)
file(COPY ${PICTURES} DESTINATION ${folder}/images)
# What is up to date is told by the page's time, which configure_file leaves as it was.
file(TOUCH ${OUTPUT})
