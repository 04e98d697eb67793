# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# Run by CPack on what it is about to pack: a Debian package has its configuration beside /usr, and
# its pages compressed.
set(stage "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
file(RENAME "${stage}/usr/etc" "${stage}/etc")
file(GLOB pages "${stage}/usr/share/man/man1/*.1")
execute_process(
  COMMAND gzip -9n ${pages} "${stage}/usr/share/doc/sallowmere/changelog"
  COMMAND_ERROR_IS_FATAL ANY)
