# Writes OUTPUT, a source file that holds the page agent: the scripts SCRIPTS as the body of one
# function.
set(body "")
foreach(script ${SCRIPTS})
    file(READ ${script} text)
    string(APPEND body "${text}\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"platform/chromium/page_agent.h\"

namespace tamrin {

std::string_view PageAgentScript() {
    return R\"agent((() => {
'use strict';
${body}})();)agent\";
}

}  // namespace tamrin
")
