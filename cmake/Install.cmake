# What installing lays out. The prefix is the folder of the product family, in which the family's
# home page program stands; everything of ours lies in one folder below it, the application's folder:
#
#   KestrixStudy/KestrixStudy          the workbench
#   KestrixStudy/RiskBookRpts.exe      the report preview
#   KestrixStudy/kestrix               the command: lists, reports, checks
#   KestrixStudy/risk_esmatn.mdb       the template of a study
#   KestrixStudy/hlpAnnlyAdv.pdf       the manual
#   KestrixStudy/acci_alys_help.htm    the help page
#   KestrixStudy/RskAsmtFld/           the register, the lists, the pictures, and later the studies
#
# Programs and help are renewed each time. Databases and pictures are the user's from the first day
# on: InstallData.cmake only adds those that are missing.

if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set_property(CACHE CMAKE_INSTALL_PREFIX PROPERTY VALUE "/opt/kestrix")
endif()

foreach(program KestrixStudy RiskBookRpts kestrix)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION KestrixStudy)
  endif()
endforeach()

install(FILES
  "${PROJECT_BINARY_DIR}/help/hlpAnnlyAdv.pdf"
  "${PROJECT_BINARY_DIR}/help/acci_alys_help.htm"
  DESTINATION KestrixStudy OPTIONAL)
install(FILES "${PROJECT_SOURCE_DIR}/data/pictures/kestrix.png" DESTINATION KestrixStudy)

install(CODE "set(KESTRIX_PRISTINE \"${KESTRIX_PRISTINE}\")")
install(SCRIPT "${CMAKE_CURRENT_LIST_DIR}/InstallData.cmake")
