# mv_delay_import(TARGET DLL DEF HEADER LIBRARY): what consumers of a library link so that it is loaded at the first call
# of one of its functions. DLL is its file name, DEF its export list, HEADER (as included) declares the functions, which
# take no argument and return a pointer; LIBRARY is the target that builds it.
# On Windows the import library and the routine are the toolchain's; elsewhere one stub per function is generated, over
# the routine in platform/delay.
function(mv_delay_import target dll def header library)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${def})
    if(WIN32)
        set(import ${CMAKE_CURRENT_BINARY_DIR}/lib${target}.a)
        add_custom_command(OUTPUT ${import} DEPENDS ${def} VERBATIM
            COMMAND ${CMAKE_DLLTOOL} --input-def ${def} --dllname ${dll} --output-delaylib ${import})
        add_custom_target(${target}_import DEPENDS ${import})
        add_library(${target} INTERFACE)
        target_link_libraries(${target} INTERFACE mv_interfaces ${import} delayimp)
        add_dependencies(${target} ${target}_import ${library})
        return()
    endif()

    file(STRINGS ${def} lines)
    set(names "")
    set(in_exports FALSE)
    foreach(line IN LISTS lines)
        string(STRIP "${line}" line)
        if(line STREQUAL "EXPORTS")
            set(in_exports TRUE)
        elseif(in_exports AND line MATCHES "^[A-Za-z_][A-Za-z0-9_]*$")
            list(APPEND names ${line})
        endif()
    endforeach()
    set(imports "")
    set(stubs "")
    set(index 0)
    foreach(name IN LISTS names)
        string(APPEND imports "    {\"${name}\"},\n")
        string(APPEND stubs "decltype(${name}()) ${name}() {\n"
            "    const auto function = reinterpret_cast<void (*)()>(GetDelayImport(library, imports[${index}]));\n"
            "    return reinterpret_cast<decltype(&${name})>(function)();\n}\n")
        math(EXPR index "${index} + 1")
    endforeach()
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp @ONLY CONTENT
"// Stubs of the delayed imports from @dll@, made from its export list.
#include <delayload.h>
#include <@header@>

namespace {
constinit DelayImport imports[] = {
@imports@};
constinit ImgDelayDescr library = {\"@dll@\", imports, @index@};
}  // namespace

extern \"C\" {
@stubs@}
")
    add_library(${target} STATIC ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
    target_link_libraries(${target} PUBLIC mv_interfaces PRIVATE mv_delayload)
    add_dependencies(${target} ${library})
endfunction()
