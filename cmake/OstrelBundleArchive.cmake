# _ostrel_embed_archive(<target> <archive> <source to generate>)
#
# Puts an archive that the build makes into a library, where strip leaves it alone; the library is built again when the
# archive changes. The generated unit is nobody's to mend: no warnings, no precompiled header, no unity build, no code
# generators.
function(_ostrel_embed_archive target archive source)
  string(REPLACE "\\" "\\\\" archive_in_assembly "${archive}")
  string(REPLACE "\"" "\\\"" archive_in_assembly "${archive_in_assembly}")
  configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/OstrelBundleArchive.cpp.in" "${source}" @ONLY)
  target_sources("${target}" PRIVATE "${source}")
  set_source_files_properties("${source}" PROPERTIES
    OBJECT_DEPENDS "${archive}"
    COMPILE_OPTIONS "-w"
    SKIP_AUTOGEN ON
    SKIP_PRECOMPILE_HEADERS ON
    SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
