# CPack runs this between installing everything into a folder of its own and packing that: what Debian asks of a
# package beyond the program.

set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
set(program ${root}/usr/lib/brackwell)
set(documents ${root}/usr/share/doc/brackwell)
set(work ${CPACK_TOPLEVEL_DIRECTORY}/complete)

function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${work} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  set(output "${output}" PARENT_SCOPE)
endfunction()

# Stylesheets may be changed by the machine's administrator, and an update must not undo that.
file(MAKE_DIRECTORY ${root}/etc/brackwell ${documents} ${root}/usr/share/lintian/overrides ${work}/debian)
file(RENAME ${program}/xml ${root}/etc/brackwell/xml)
file(CREATE_LINK /etc/brackwell/xml ${program}/xml SYMBOLIC)
file(GLOB stylesheets RELATIVE ${root} ${root}/etc/brackwell/xml/*)
list(TRANSFORM stylesheets REPLACE ".+" "/\\0\n")
string(CONCAT stylesheets ${stylesheets})
file(WRITE ${work}/conffiles "${stylesheets}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${work}/conffiles)

string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${documents}/changelog.Debian
"brackwell (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * What is new stands in changelog.gz.

 -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${now}
")
file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/../../CHANGELOG.md ${documents}/changelog)
file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${documents})
file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/lintian-overrides ${root}/usr/share/lintian/overrides/brackwell)
run(gzip -9n ${documents}/changelog ${documents}/changelog.Debian ${root}/usr/share/man/man1/brackwell.1)

# The program starts without its browser, so what only that needs is recommended.
set(binaries ${program}/brackwell)
set(fields -dDepends -e${program}/brackwell)
if(EXISTS ${program}/brackwell_webview.so)
  list(APPEND binaries ${program}/brackwell_webview.so)
  list(APPEND fields -dRecommends -e${program}/brackwell_webview.so)
endif()
run(strip --strip-unneeded --remove-section=.comment --remove-section=.note ${binaries})
file(MAKE_DIRECTORY ${root}/DEBIAN)  # by this dpkg-shlibdeps knows the folder for a package's
file(WRITE ${work}/debian/control "Source: brackwell\n\nPackage: brackwell\nArchitecture: any\n")
run(dpkg-shlibdeps -O ${fields})
if(output MATCHES "shlibs:Depends=([^\n]+)")
  set(CPACK_DEBIAN_PACKAGE_DEPENDS ${CMAKE_MATCH_1})
endif()
if(output MATCHES "shlibs:Recommends=([^\n]+)")
  string(PREPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS "${CMAKE_MATCH_1}, ")
endif()
file(REMOVE_RECURSE ${root}/DEBIAN)
run(chmod -R u=rwX,go=rX ${root})
