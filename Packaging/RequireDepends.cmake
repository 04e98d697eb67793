# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# Read by CPack first: no library says what the program loads at run time.
if(NOT CPACK_DEBIAN_PACKAGE_DEPENDS)
  message(FATAL_ERROR
    "The package is made by Packaging/make-package, which knows what it depends on")
endif()
