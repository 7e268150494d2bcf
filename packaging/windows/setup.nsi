; The setup program for Windows: for one user without asking for rights, or for everybody.
;
;   makensis -INPUTCHARSET UTF8 -DBIN=… -DOUT=… -DVERSION=1.0.0.1 -DSOURCE=… setup.nsi
;
; setup.exe /S             installs without a question, for this user
; setup.exe /S /ALLUSERS   for everybody; needs an administrator
; setup.exe /S /MDB        offers the program for .mdb files in the file manager, too
; setup.exe /D=C:\folder   into that folder
Unicode true
Target amd64-unicode
ManifestDPIAware true
ManifestSupportedOS Win10
RequestExecutionLevel user
SetCompressor /SOLID lzma

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include nsDialogs.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tavrel"
!define PROGRAM_TYPE "Tavrel.Database"

Name "Tavrel"
BrandingText "Tavrel ${VERSION}"
OutFile "${OUT}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

Var ForAll        ; 1: for everybody
Var OffersFiles   ; 1: for .mdb files, too
Var RadioAll
Var CheckFiles

!define MUI_ICON "${SOURCE}\windows\Tavrel.ico"
!define MUI_UNICON "${SOURCE}\windows\Tavrel.ico"
!define MUI_ABORTWARNING
!define MUI_LANGDLL_ALLLANGUAGES
!define MUI_FINISHPAGE_RUN "$INSTDIR\tavrel.exe"
!insertmacro MUI_PAGE_WELCOME
Page custom ChoicesShow ChoicesLeave
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Korean"
!insertmacro MUI_LANGUAGE "English"

LangString WhoFor ${LANG_KOREAN} "설치 대상"
LangString WhoFor ${LANG_ENGLISH} "Who it is for"
LangString WhoForMore ${LANG_KOREAN} "이 컴퓨터의 누가 쓸지 고르십시오."
LangString WhoForMore ${LANG_ENGLISH} "Choose who uses it on this computer."
LangString OnlyMe ${LANG_KOREAN} "나만 사용 (관리자 권한이 필요 없음)"
LangString OnlyMe ${LANG_ENGLISH} "Only me (needs no administrator)"
LangString Everybody ${LANG_KOREAN} "이 컴퓨터의 모든 사용자 (관리자 권한 필요)"
LangString Everybody ${LANG_ENGLISH} "Everybody who uses this computer (needs an administrator)"
LangString OfferFiles ${LANG_KOREAN} "탐색기의 .mdb 파일 '연결 프로그램' 목록에 Tavrel 추가"
LangString OfferFiles ${LANG_ENGLISH} "Offer Tavrel under 'Open with' for .mdb files"
LangString Description ${LANG_KOREAN} "두 데이터베이스의 구조 비교"
LangString Description ${LANG_ENGLISH} "Compares the structure of two databases"
LangString NeedsAdministrator ${LANG_KOREAN} "모든 사용자를 위해 설치하려면 관리자 권한이 필요합니다."
LangString NeedsAdministrator ${LANG_ENGLISH} "Installing for everybody needs an administrator."
LangString InUse ${LANG_KOREAN} "Tavrel이 실행 중입니다. 끝낸 다음 다시 하십시오."
LangString InUse ${LANG_ENGLISH} "Tavrel is running. Close it and try again."

VIProductVersion "${VERSION}"
!macro VersionTexts LANGUAGE DESCRIPTION
  VIAddVersionKey /LANG=${LANGUAGE} "ProductName" "Tavrel"
  VIAddVersionKey /LANG=${LANGUAGE} "CompanyName" "Ardel"
  VIAddVersionKey /LANG=${LANGUAGE} "FileDescription" "${DESCRIPTION}"
  VIAddVersionKey /LANG=${LANGUAGE} "FileVersion" "${VERSION}"
  VIAddVersionKey /LANG=${LANGUAGE} "ProductVersion" "${VERSION}"
  VIAddVersionKey /LANG=${LANGUAGE} "LegalCopyright" "Ardel"
!macroend
!insertmacro VersionTexts ${LANG_KOREAN} "Tavrel 설치"
!insertmacro VersionTexts ${LANG_ENGLISH} "Tavrel setup"

; Where things go, by who it is for.
!macro UseContext
  ${If} $ForAll = 1
    SetShellVarContext all
  ${Else}
    SetShellVarContext current
  ${EndIf}
!macroend

!macro IsAdministrator OUT
  UserInfo::GetAccountType
  Pop ${OUT}
!macroend

Function DefaultFolder
  ${If} $ForAll = 1
    StrCpy $INSTDIR "$PROGRAMFILES64\Tavrel"
  ${Else}
    StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Tavrel"
  ${EndIf}
  ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 != ""
    StrCpy $INSTDIR $0
  ${EndIf}
FunctionEnd

Function .onInit
  SetRegView 64
  StrCpy $ForAll 0
  StrCpy $OffersFiles 0
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/ALLUSERS" $2
  ${IfNot} ${Errors}
    StrCpy $ForAll 1
  ${EndIf}
  ClearErrors
  ${GetOptions} $1 "/MDB" $2
  ${IfNot} ${Errors}
    StrCpy $OffersFiles 1
  ${EndIf}
  !insertmacro UseContext
  ${If} $INSTDIR == ""
    Call DefaultFolder
  ${EndIf}
  ${If} $ForAll = 1
    !insertmacro IsAdministrator $2
    ${If} $2 != "Admin"
      MessageBox MB_OK|MB_ICONSTOP "$(NeedsAdministrator)" /SD IDOK
      SetErrorLevel 740
      Quit
    ${EndIf}
  ${EndIf}
FunctionEnd

Function ChoicesShow
  !insertmacro MUI_HEADER_TEXT "$(WhoFor)" "$(WhoForMore)"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 10u 100% 12u "$(OnlyMe)"
  Pop $1
  ${NSD_CreateRadioButton} 0 28u 100% 12u "$(Everybody)"
  Pop $RadioAll
  ${NSD_CreateCheckBox} 0 56u 100% 12u "$(OfferFiles)"
  Pop $CheckFiles
  ${If} $ForAll = 1
    ${NSD_Check} $RadioAll
  ${Else}
    ${NSD_Check} $1
  ${EndIf}
  ${If} $OffersFiles = 1
    ${NSD_Check} $CheckFiles
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function ChoicesLeave
  ${NSD_GetState} $CheckFiles $OffersFiles
  ${NSD_GetState} $RadioAll $0
  !insertmacro IsAdministrator $2
  ${If} $0 = 1
  ${AndIf} $2 != "Admin"
    ; Started once more, by somebody who may.
    StrCpy $3 "/ALLUSERS"
    ${If} $OffersFiles = 1
      StrCpy $3 "/ALLUSERS /MDB"
    ${EndIf}
    ClearErrors
    ExecShell "runas" "$EXEPATH" "$3"
    ${If} ${Errors}
      Abort
    ${EndIf}
    Quit
  ${EndIf}
  ${If} $0 != $ForAll
    StrCpy $ForAll $0
    !insertmacro UseContext
    Call DefaultFolder
  ${EndIf}
FunctionEnd

; A program that runs cannot be overwritten; nothing is changed then.
!macro StopWhenInUse FILE
  ${If} ${FileExists} "${FILE}"
    ClearErrors
    FileOpen $0 "${FILE}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "$(InUse)" /SD IDOK
      SetErrorLevel 32
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

Section
  !insertmacro UseContext
  !insertmacro StopWhenInUse "$INSTDIR\tavrel.exe"
  !insertmacro StopWhenInUse "$INSTDIR\tavrel-cli.exe"
  SetOutPath "$INSTDIR"
  File "${BIN}\tavrel.exe"
  File "${BIN}\tavrel-cli.exe"
  File "/oname=copyright.txt" "${SOURCE}\copyright"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortCut "$SMPROGRAMS\Tavrel.lnk" "$INSTDIR\tavrel.exe" "" "" "" SW_SHOWNORMAL "" "$(Description)"

  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "Tavrel"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\tavrel.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "Ardel"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "ForAll" $ForAll
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $0

  ; Beside the programs that are there; which of them a double click starts stays as it is.
  ${If} $OffersFiles = 1
    WriteRegStr SHCTX "Software\Classes\${PROGRAM_TYPE}" "" "Tavrel"
    WriteRegStr SHCTX "Software\Classes\${PROGRAM_TYPE}\DefaultIcon" "" "$INSTDIR\tavrel.exe,0"
    WriteRegStr SHCTX "Software\Classes\${PROGRAM_TYPE}\shell\open\command" "" '"$INSTDIR\tavrel.exe" "%1"'
    WriteRegStr SHCTX "Software\Classes\.mdb\OpenWithProgids" "${PROGRAM_TYPE}" ""
    ${RefreshShellIcons}
  ${EndIf}
SectionEnd

Function un.onInit
  SetRegView 64
  StrCpy $ForAll 0
  SetShellVarContext all
  ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == $INSTDIR
    StrCpy $ForAll 1
  ${EndIf}
  !insertmacro UseContext
FunctionEnd

; What the program and its user made stays: the settings in the registry, and databases wherever they lie.
Section "Uninstall"
  !insertmacro StopWhenInUse "$INSTDIR\tavrel.exe"
  !insertmacro StopWhenInUse "$INSTDIR\tavrel-cli.exe"
  Delete "$INSTDIR\tavrel.exe"
  Delete "$INSTDIR\tavrel-cli.exe"
  Delete "$INSTDIR\copyright.txt"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Tavrel.lnk"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  DeleteRegKey SHCTX "Software\Classes\${PROGRAM_TYPE}"
  DeleteRegValue SHCTX "Software\Classes\.mdb\OpenWithProgids" "${PROGRAM_TYPE}"
SectionEnd
