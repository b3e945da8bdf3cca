# tavrel_add_library_copy(NAME OPTIONS...) compiles the library's sources once more, into objects, with
# these options beside those of the project.
function(tavrel_add_library_copy name)
  add_library(${name} OBJECT EXCLUDE_FROM_ALL)
  foreach(target tavrel_system tavrel_text tavrel_objects tavrel_wing)
    get_target_property(sources ${target} SOURCES)
    get_target_property(folder ${target} SOURCE_DIR)
    foreach(source IN LISTS sources)
      cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${folder})
      target_sources(${name} PRIVATE ${source})
      if(source MATCHES "\\.[a-z0-9]+\\.cpp$")  # kernels of one job give like helpers like names
        set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
      endif()
    endforeach()
  endforeach()
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(${name} PUBLIC
    tavrel_options uriparser::uriparser utf8proc::utf8proc ZLIB::ZLIB)
  target_compile_options(${name} PRIVATE ${ARGN})
endfunction()
