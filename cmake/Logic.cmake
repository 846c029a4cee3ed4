# Business logic of every area as plain functions (no widgets): sales, expenses, payments, books,
# output, tools. Their screens live in each area's screens/ folder and are built with the program.
set(LOGIC_GLOBS)
foreach(area sales expenses payments books output tools)
  list(APPEND LOGIC_GLOBS ${PROJECT_SOURCE_DIR}/${area}/*.cpp)
endforeach()
file(GLOB LOGIC_SOURCES CONFIGURE_DEPENDS ${LOGIC_GLOBS})
if(LOGIC_SOURCES)
  add_library(brevano_logic STATIC ${LOGIC_SOURCES})
  target_link_libraries(brevano_logic PUBLIC brevano_core)
endif()
