# Makes a source of the files of the page: each is a text `embedded_file("name")`.
#
#   cmake -DFILES=name=path;... -DSOURCE=... -P embed.cmake
set(arrays "")
set(rows "")
set(number 0)
foreach(file IN LISTS FILES)
    string(REGEX MATCH "^([^=]+)=(.+)$" matched "${file}")
    set(name ${CMAKE_MATCH_1})
    file(READ ${CMAKE_MATCH_2} bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND arrays "constexpr char kFile${number}[] = {${bytes}};\n")
    string(APPEND rows "    {\"${name}\", {kFile${number}, sizeof kFile${number}}},\n")
    math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${SOURCE} "#include \"tools/quon5-report/page.h\"\n\nnamespace {\n\n${arrays}\n"
    "constexpr struct {\n    std::string_view name;\n    std::string_view text;\n} kFiles[] = {\n"
    "${rows}};\n\n}  // namespace\n\nstd::string_view embedded_file(std::string_view name) {\n"
    "    for (const auto& file : kFiles) {\n        if (file.name == name) return file.text;\n    }\n"
    "    return {};\n}\n")
