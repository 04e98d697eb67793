# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# How CPack makes the Debian package, once make-package tells it what the program loads at run time.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the Sallowmere authors <authors@sallowmere.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "panel that shows what the command-line coding assistant is doing")
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_CURRENT_LIST_DIR}/RequireDepends.cmake")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/StageForDebian.cmake")

set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_ERROR_ON_ABSOLUTE_INSTALL_DESTINATION ON)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/debian/conffiles")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"A small black panel at the top of the screen tells which sessions of the
coding assistant Claude Code work, wait for you or are done, what they ask,
and how much of the token allowance is used. It brings you to the right
terminal, answers a question there, or sends a session a prompt.
.
It only reads the assistant's files. The command sallowmere-hook adds a hook
to the assistant that tells of permission requests at once.")
include(CPack)
