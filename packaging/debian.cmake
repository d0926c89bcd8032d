# SPDX-License-Identifier: MIT
# Run by cpack before it packs: what is otherwise in Debian's packages. Manual pages and changes are
# compressed, to the same bytes each time; completions lie where Debian's zsh looks for them.
set(root ${CPACK_TEMPORARY_DIRECTORY})
file(GLOB papers ${root}/*/usr/share/man/man?/* ${root}/*/usr/share/doc/*/changelog)
if(papers)
  execute_process(COMMAND gzip -9n ${papers} COMMAND_ERROR_IS_FATAL ANY)
endif()
file(GLOB folders ${root}/*/usr/share/zsh)
foreach(folder ${folders})
  file(RENAME ${folder}/site-functions ${folder}/vendor-completions)
endforeach()
