# Run by CPack on the installed files before it packs them: what Debian's policy has elsewhere, compressed or
# besides. Other ways to install have none of it.
set(USR ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
set(DOC ${USR}/share/doc/ortu)
set(VERSION ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

function(ortu_compress)
  execute_process(COMMAND gzip -9nf ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# SOURCE_DATE_EPOCH where it is set.
string(TIMESTAMP SECONDS %s UTC)
execute_process(COMMAND date -R -u -d @${SECONDS}
  OUTPUT_VARIABLE DATE OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

file(MAKE_DIRECTORY ${DOC})
file(COPY_FILE ${CPACK_ORTU_TOP}/packaging/debian/copyright ${DOC}/copyright)
file(COPY_FILE ${CPACK_ORTU_TOP}/CHANGELOG.md ${DOC}/changelog)
file(WRITE ${DOC}/changelog.Debian
"ortu (${VERSION}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}: see changelog.gz.

 -- ${CPACK_PACKAGE_CONTACT}  ${DATE}
")
ortu_compress(${DOC}/changelog ${DOC}/changelog.Debian ${USR}/share/man/man1/ortu.1)

file(MAKE_DIRECTORY ${USR}/share/zsh/vendor-completions)
file(RENAME ${USR}/share/zsh/site-functions/_ortu ${USR}/share/zsh/vendor-completions/_ortu)
file(REMOVE_RECURSE ${USR}/share/zsh/site-functions)

# As Debian's own tools strip.
file(GLOB_RECURSE MODULES ${USR}/lib/*.so)
file(GLOB PROGRAMS ${USR}/bin/*)
execute_process(
  COMMAND strip --strip-unneeded --remove-section=.comment --remove-section=.note ${MODULES} ${PROGRAMS}
  COMMAND_ERROR_IS_FATAL ANY)

file(MAKE_DIRECTORY ${USR}/share/lintian/overrides)
file(COPY_FILE ${CPACK_ORTU_TOP}/packaging/debian/lintian-overrides ${USR}/share/lintian/overrides/ortu)
file(GLOB DOCUMENTATION ${DOC}/*)
file(CHMOD ${MODULES} ${DOCUMENTATION} ${USR}/share/lintian/overrides/ortu
  PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
