' Orbex from VBScript: an INI file, a String() array passed on, and an error with Number 0.
' Run it with: cscript //nologo ini.vbs
Option Explicit

Dim files, path, ini, height, lines, leftEdge

Set files = CreateObject("Scripting.FileSystemObject")
path = files.BuildPath(files.GetSpecialFolder(2), "OrbexExample.ini")   ' 2: the temporary folder

Set ini = CreateObject("Orbex.INILib")
ini.Filename = path                              ' the file of every call that names none
ini.WriteValue "Window", "Width", 800
ini.WriteValue "Window", "Title", "Orbex example"
WScript.Echo "Width = " & ini.GetNumericValue("Window", "Width")
height = 600                                     ' Default is passed by reference
WScript.Echo "Height = " & ini.GetNumericValue("Window", "Height", height) & " (missing: the default)"
WScript.Echo "Title = " & ini.GetStringValue("Window", "Title")

' GetSection gives a String() array. A script cannot read its elements everywhere, but it can
' always hand it on to a member that takes one.
lines = ini.GetSection("Window")
ini.WriteSection "Saved", lines
WScript.Echo "Saved.Title = " & ini.GetStringValue("Saved", "Title")

' Every INILib failure has Number 0: Err.Number stays 0, so test Err.Source.
ini.WriteValue "Window", "Left", -1              ' -1 is the one number GetNumericValue cannot give
On Error Resume Next
leftEdge = ini.GetNumericValue("Window", "Left")
If Left(Err.Source, 7) = "INILib:" Then
    WScript.Echo "Error " & Err.Number & " from " & Err.Source & ": " & Err.Description
End If
Err.Clear
On Error GoTo 0

Set ini = Nothing
files.DeleteFile path
WScript.Echo "Done."
