@echo off
rem Tries Quillbox on this system and writes report.txt: see read-me.txt.
echo This takes up to an hour. Please leave mouse and keyboard alone meanwhile.
cscript //nologo "%~dp0programs\kit.js"
if not "%1"=="/q" pause
