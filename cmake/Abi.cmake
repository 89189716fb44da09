# What is made from a type library's IDL: the ABI (tools/generate_abi.py) and, for Windows, the type
# library, its C++ header and its GUIDs (widl).
#
#   add_abi(NAME IDL)
# defines NAME_GENERATED (the directory to include from), NAME_SOURCES (to compile into whatever
# implements the classes), NAME_TLB, and the target NAME_abi to depend on.

find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(ABI_GENERATOR ${PROJECT_SOURCE_DIR}/tools/generate_abi.py ${PROJECT_SOURCE_DIR}/tools/idl.py)

function(add_abi name idl)
  set(out ${CMAKE_BINARY_DIR}/generated/${name})
  file(MAKE_DIRECTORY ${out})
  get_filename_component(library ${idl} NAME_WE)
  add_custom_command(
    OUTPUT ${out}/enums.h ${out}/classes.h ${out}/classes.cpp
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/generate_abi.py ${idl} --out ${out}
    DEPENDS ${idl} ${ABI_GENERATOR}
    COMMENT "Generating the ABI of ${library}")
  set(made ${out}/enums.h ${out}/classes.h)
  set(sources ${out}/classes.cpp)
  if(WIN32)
    find_program(WIDL widl REQUIRED)
    set(widl ${WIDL} ${ZEPKIT10_WIDL_TARGET} -I/usr/include/wine/wine/windows
             -L/usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
    # Two enumerations share a constant's name, which a type library allows and C++ does not: in the
    # header one of them carries its enumeration's name as a prefix.
    add_custom_command(
      OUTPUT ${out}/header/${library}.idl
      COMMAND ${CMAKE_COMMAND} -E make_directory ${out}/header
      COMMAND sed "s/^\\( *\\)zepVbErrOutOfMemory = 31001/\\1ZepVbErrors31001To32811_zepVbErrOutOfMemory = 31001/"
              ${idl} > ${out}/header/${library}.idl
      DEPENDS ${idl} VERBATIM)
    add_custom_command(
      OUTPUT ${out}/${library}.h ${out}/${library}_i.c ${out}/${library}.tlb
      COMMAND ${widl} -h -o ${out}/${library}.h ${out}/header/${library}.idl
      COMMAND ${widl} -u -o ${out}/${library}_i.c ${out}/header/${library}.idl
      COMMAND ${widl} -t -o ${out}/${library}.tlb ${idl}
      DEPENDS ${idl} ${out}/header/${library}.idl
      COMMENT "Compiling the type library ${library}")
    list(APPEND made ${out}/${library}.h ${out}/${library}.tlb)
    list(APPEND sources ${out}/${library}_i.c)
  endif()
  add_custom_target(${name}_abi DEPENDS ${made})
  set(${name}_GENERATED ${out} PARENT_SCOPE)
  set(${name}_SOURCES ${sources} PARENT_SCOPE)
  set(${name}_TLB ${out}/${library}.tlb PARENT_SCOPE)
endfunction()
