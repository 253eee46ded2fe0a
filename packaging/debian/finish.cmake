# Run by CPack on what it has gathered, before it makes the packages of it: adds to each package its
# licence and history, and compresses manual pages and histories, as the Debian Policy (12.1, 12.5,
# 12.7) wants them.

set(history ${CMAKE_CURRENT_LIST_DIR}/changelog)
file(STRINGS ${history} first LIMIT_COUNT 1)
set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
if(NOT first MATCHES "^kestrelview \\(${version}\\)")
  message(FATAL_ERROR "${history} does not begin with version ${version}")
endif()

function(add_text source folder name)
  file(COPY_FILE ${source} ${folder}/${name})
  file(CHMOD ${folder}/${name} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

foreach(component IN ITEMS Unspecified plugin_development)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component})
  string(TOUPPER ${component} upper)
  set(documents ${root}/usr/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  file(MAKE_DIRECTORY ${documents})
  file(CHMOD ${documents} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
       WORLD_READ WORLD_EXECUTE)
  add_text(${CMAKE_CURRENT_LIST_DIR}/copyright ${documents} copyright)
  add_text(${history} ${documents} changelog.Debian)
  add_text(${CMAKE_CURRENT_LIST_DIR}/../../CHANGELOG.md ${documents} changelog)
  file(GLOB_RECURSE texts ${documents}/changelog* ${root}/usr/share/man/*.1)
  execute_process(COMMAND gzip -9nf ${texts} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
