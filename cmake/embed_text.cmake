# Writes OUTPUT, a source file whose function FUNCTION, declared in HEADER, answers the texts TEXTS
# one behind the other.
set(body "")
foreach(file ${TEXTS})
    file(READ ${file} text)
    string(APPEND body "${text}\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"${HEADER}\"

namespace tamrin {

std::string_view ${FUNCTION}() {
    return R\"text(${body})text\";
}

}  // namespace tamrin
")
