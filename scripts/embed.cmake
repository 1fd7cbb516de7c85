# Makes a source of files that become part of a program: each is a text `embedded_file("name")`,
# which HEADER declares.
#
#   cmake -DFILES=name=path;... -DSOURCE=... -DHEADER=... -P embed.cmake
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
file(WRITE ${SOURCE} "#include \"${HEADER}\"\n\nnamespace {\n\n${arrays}\n"
    "constexpr struct {\n    std::string_view name;\n    std::string_view text;\n} kFiles[] = {\n"
    "${rows}};\n\n}  // namespace\n\nstd::string_view embedded_file(std::string_view name) {\n"
    "    for (const auto& file : kFiles) {\n        if (file.name == name) return file.text;\n    }\n"
    "    return {};\n}\n")
