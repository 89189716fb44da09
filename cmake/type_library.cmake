# What is made from a type library's IDL, in the folder generated/<name> of the build:
#   everywhere   enums.h, and the class descriptions, shims and event proxies of tools/generate_abi.py
#   for Windows  the type library, its C++ header and its GUIDs by widl
#
#   add_type_library(NAME IDL)
# defines NAME_GENERATED (the folder to include from), NAME_SOURCES (to compile into whatever
# implements the classes), NAME_TLB, and the target NAME_abi to depend on.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(ABI_GENERATOR ${PROJECT_SOURCE_DIR}/tools/generate_abi.py ${PROJECT_SOURCE_DIR}/tools/idl.py)
set(TYPE_LIBRARY_SETTLER ${PROJECT_SOURCE_DIR}/tools/settle_type_library.py)
if(WIN32)
  find_program(WIDL widl REQUIRED)
  find_path(IDL_IMPORTS oaidl.idl PATHS /usr/include/wine/wine/windows REQUIRED
    NO_CMAKE_FIND_ROOT_PATH)
  find_path(STDOLE stdole2.tlb PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows REQUIRED
    NO_CMAKE_FIND_ROOT_PATH)
endif()

# The generator names its files after the interfaces of the IDL.
function(list_abi_files idl result)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${idl})
  set(files enums.h classes.h)
  file(STRINGS ${idl} lines REGEX "^ *(disp)?interface [A-Za-z0-9_]+ .*{")
  foreach(line IN LISTS lines)
    string(REGEX MATCH "(interface|dispinterface) _*([A-Za-z0-9]+)" match "${line}")
    string(REGEX REPLACE "([a-z0-9])([A-Z])" "\\1_\\2" file "${CMAKE_MATCH_2}")
    string(TOLOWER "${file}" file)
    if(line MATCHES "dispinterface")
      list(APPEND files ${file}_events.h)
    else()
      list(APPEND files ${file}_shim.h)
    endif()
  endforeach()
  set(${result} ${files} PARENT_SCOPE)
endfunction()

function(add_type_library name idl)
  set(out ${CMAKE_BINARY_DIR}/generated/${name})
  file(MAKE_DIRECTORY ${out})
  get_filename_component(library ${idl} NAME_WE)
  list_abi_files(${idl} headers)
  list(TRANSFORM headers PREPEND ${out}/)
  # The generator leaves a file alone that would not change, so the stamp tells that it has run.
  add_custom_command(
    OUTPUT ${out}/abi.stamp
    BYPRODUCTS ${headers} ${out}/classes.cpp
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/generate_abi.py ${idl} --out ${out}
    COMMAND ${CMAKE_COMMAND} -E touch ${out}/abi.stamp
    DEPENDS ${idl} ${ABI_GENERATOR} VERBATIM
    COMMENT "Generating the ABI of ${library}")
  set(made ${out}/abi.stamp)
  set(sources ${out}/classes.cpp)
  if(WIN32)
    set(widl ${WIDL} ${ZEPKIT10_WIDL_TARGET} -I${IDL_IMPORTS} -L${STDOLE})
    # In a type library each enumeration is a scope of its own, in a C header they share one: there
    # the second of two constants of one name carries its enumeration's name in front. And a literal
    # is no BSTR, so in C++ texts have no defaults.
    set(header_idl ${out}/header/${library}.idl)
    add_custom_command(
      OUTPUT ${header_idl}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${out}/header
      COMMAND sed -e "/enum ZepVbErrors31001To32811/,/}/s/zepVbErrOutOfMemory/ZepVbErrors31001To32811_&/"
              -e "s/, defaultvalue([^)]*)] BSTR/] BSTR/g" ${idl} > ${header_idl}
      DEPENDS ${idl} VERBATIM
      COMMENT "Fitting ${library} to a C++ header")
    add_custom_command(
      OUTPUT ${out}/${library}.h ${out}/${library}_i.c ${out}/${library}.tlb
      COMMAND ${widl} -h -o ${out}/${library}.h ${header_idl}
      COMMAND ${widl} -u -o ${out}/${library}_i.c ${header_idl}
      COMMAND ${widl} -t -o ${out}/${library}.tlb ${idl}
      COMMAND Python3::Interpreter ${TYPE_LIBRARY_SETTLER} ${out}/${library}.tlb
      DEPENDS ${idl} ${header_idl} ${TYPE_LIBRARY_SETTLER} VERBATIM
      COMMENT "Compiling the type library ${library}")
    list(APPEND made ${out}/${library}.h ${out}/${library}.tlb)
    list(APPEND sources ${out}/${library}_i.c)
  endif()
  add_custom_target(${name}_abi DEPENDS ${made})
  set(${name}_GENERATED ${out} PARENT_SCOPE)
  set(${name}_SOURCES ${sources} PARENT_SCOPE)
  set(${name}_TLB ${out}/${library}.tlb PARENT_SCOPE)
endfunction()
