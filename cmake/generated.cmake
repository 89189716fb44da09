# What is made from idl/Zepkit10.idl, all of it in the folder generated/ of the build:
#   everywhere   enums.h, and the shims, event proxies and class descriptions of tools/generate_abi.py
#   for Windows  Zepkit10.tlb, Zepkit10.h and Zepkit10_i.c by widl, runtime_errors.rc by windmc
# Targets that include any of it link the interface library `generated`.
set(ZEPKIT10_IDL ${PROJECT_SOURCE_DIR}/idl/Zepkit10.idl)
set(ZEPKIT10_GENERATED ${PROJECT_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${ZEPKIT10_GENERATED})
find_program(ZEPKIT10_PYTHON python3 REQUIRED)

# The generator names its files after the classes and event interfaces of the IDL.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ZEPKIT10_IDL})
file(STRINGS ${ZEPKIT10_IDL} idl_lines REGEX "^ +(coclass|dispinterface) [A-Za-z_]+ {")
set(abi_files enums.h classes.h classes.cpp)
foreach(line IN LISTS idl_lines)
  string(REGEX MATCH "(coclass|dispinterface) _*([A-Za-z]+)" match "${line}")
  string(REGEX REPLACE "([a-z0-9])([A-Z])" "\\1_\\2" name "${CMAKE_MATCH_2}")
  string(REGEX MATCH "coclass" is_class "${line}")
  string(TOLOWER "${name}" name)
  list(APPEND abi_files "${name}_$<IF:$<BOOL:${is_class}>,shim,events>.h")
endforeach()
list(TRANSFORM abi_files PREPEND ${ZEPKIT10_GENERATED}/)

add_custom_command(
  OUTPUT ${ZEPKIT10_GENERATED}/abi.stamp
  BYPRODUCTS ${abi_files}
  COMMAND ${ZEPKIT10_PYTHON} ${PROJECT_SOURCE_DIR}/tools/generate_abi.py
          ${ZEPKIT10_IDL} --out ${ZEPKIT10_GENERATED}
  COMMAND ${CMAKE_COMMAND} -E touch ${ZEPKIT10_GENERATED}/abi.stamp
  DEPENDS ${ZEPKIT10_IDL} ${PROJECT_SOURCE_DIR}/tools/generate_abi.py
          ${PROJECT_SOURCE_DIR}/tools/idl.py
  COMMENT "Generating the shims")
set(generated_files ${ZEPKIT10_GENERATED}/abi.stamp)

if(WIN32)
  find_program(ZEPKIT10_WIDL widl REQUIRED)
  find_path(ZEPKIT10_IDL_IMPORTS oaidl.idl REQUIRED NO_CMAKE_FIND_ROOT_PATH
    PATHS /usr/include/wine/wine/windows /usr/include/wine/windows)
  find_path(ZEPKIT10_STDOLE stdole2.tlb REQUIRED NO_CMAKE_FIND_ROOT_PATH
    PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
  set(widl ${ZEPKIT10_WIDL} ${ZEPKIT10_WIDL_FLAGS} -I${ZEPKIT10_IDL_IMPORTS} -L${ZEPKIT10_STDOLE})

  add_custom_command(
    OUTPUT ${ZEPKIT10_GENERATED}/Zepkit10.tlb
    COMMAND ${widl} -t -o ${ZEPKIT10_GENERATED}/Zepkit10.tlb ${ZEPKIT10_IDL}
    DEPENDS ${ZEPKIT10_IDL} COMMENT "Generating Zepkit10.tlb")

  # In the type library each enumeration is a scope of its own, in a C header they share one: there
  # the later of two constants of one name carries its enumeration's name in front.
  set(header_idl ${ZEPKIT10_GENERATED}/header.idl)
  add_custom_command(
    OUTPUT ${header_idl}
    COMMAND sed -e "/enum ZepVbErrors31001To32811/,/}/s/zepVbErrOutOfMemory/ZepVbErrors31001To32811_&/"
            ${ZEPKIT10_IDL} > ${header_idl}
    DEPENDS ${ZEPKIT10_IDL} VERBATIM COMMENT "Generating header.idl")
  add_custom_command(
    OUTPUT ${ZEPKIT10_GENERATED}/Zepkit10.h ${ZEPKIT10_GENERATED}/Zepkit10_i.c
    COMMAND ${widl} -h -o ${ZEPKIT10_GENERATED}/Zepkit10.h ${header_idl}
    COMMAND ${widl} -u -o ${ZEPKIT10_GENERATED}/Zepkit10_i.c ${header_idl}
    DEPENDS ${header_idl} COMMENT "Generating Zepkit10.h")
  list(APPEND generated_files ${ZEPKIT10_GENERATED}/Zepkit10.h)
endif()

add_custom_target(generated_files DEPENDS ${generated_files})
add_library(generated INTERFACE)
target_include_directories(generated SYSTEM INTERFACE ${ZEPKIT10_GENERATED})
add_dependencies(generated generated_files)
