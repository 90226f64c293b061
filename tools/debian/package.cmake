# How CPack makes the Debian package, which tools/package starts.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brackwell)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/complete.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Brackwell maintainers <maintainers@brackwell.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "compare, display, search and rename folders full of files")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Six tools in one window for people who manage and edit folders full of files:
directory comparison with fixing by copying, directory display as text, HTML
or XML, find and replace in files of any encoding, image renamer, font
sampler, and drive information.
.
Nothing is changed before it is confirmed, nothing is ever deleted, and a file
is replaced only when its new content is complete.")

# Reports are opened by xdg-open, and the shared database describes the types of files. The others are used where they
# are: the About box starts a program that tells about the machine.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-wayland, hardinfo | kinfocenter | cpu-x | lshw-gtk")

include(CPack)
