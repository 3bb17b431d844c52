# Writes OUTPUT, a source file that holds the page agent: the positions of its answers' fields, taken
# from FIELDS, and the scripts SCRIPTS as the body of one function.
set(body "")
set(last "")
file(STRINGS ${FIELDS} lines REGEX "^k[A-Za-z]+")
foreach(line ${lines})
    if(line MATCHES "^(k[A-Za-z]+) = ([^,]+),")
        string(APPEND body "const ${CMAKE_MATCH_1} = ${CMAKE_MATCH_2};\n")
    elseif(line MATCHES "^(k[A-Za-z]+),")
        string(APPEND body "const ${CMAKE_MATCH_1} = ${last} + 1;\n")
    else()
        message(FATAL_ERROR "${FIELDS}: not a field: ${line}")
    endif()
    set(last ${CMAKE_MATCH_1})
endforeach()
foreach(script ${SCRIPTS})
    file(READ ${script} text)
    string(APPEND body "${text}\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"platform/chromium/page_agents.h\"

namespace tamrin {

std::string_view PageAgentScript() {
    return R\"agent((() => {
'use strict';
${body}})();)agent\";
}

}  // namespace tamrin
")
