# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# How every target of ours is compiled.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Sums of tokens must not depend on whether the processor can fuse a product and a sum.
add_compile_options(-ffp-contract=off)

if(SALLOWMERE_SANITIZE)
  add_compile_options(-fsanitize=${SALLOWMERE_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${SALLOWMERE_SANITIZE})
endif()

# Linked by our own targets only: a library's headers are not ours to warn about.
add_library(sallowmere-warnings INTERFACE)
target_compile_options(sallowmere-warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2 -Wundef)
