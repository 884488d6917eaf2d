// Orbex from JScript: an INI file and the errors of INILib and FileLib.
// Run it with: cscript //nologo ini.js
var files = new ActiveXObject("Scripting.FileSystemObject");
var path = files.BuildPath(files.GetSpecialFolder(2), "OrbexExample.js.ini");  // 2: the temporary folder

var ini = new ActiveXObject("Orbex.INILib");
ini.Filename = path;
ini.WriteValue("Window", "Width", 800);
WScript.Echo("Width = " + ini.GetNumericValue("Window", "Width"));
WScript.Echo("Height = " + ini.GetNumericValue("Window", "Height", 600) + " (missing: the default)");

// GetSection gives a String() array: JScript can't read it, but can hand it on.
ini.WriteSection("Saved", ini.GetSection("Window"));
WScript.Echo("Saved.Width = " + ini.GetStringValue("Saved", "Width"));

// INILib fails with Number 0, which reaches JScript as the HRESULT 0x800A0000: its low word,
// the number, is 0. JScript has no Source; the description names the failure.
ini.WriteValue("Window", "Left", -1);
try {
    ini.GetNumericValue("Window", "Left");
} catch (e) {
    WScript.Echo("INILib error: number " + (e.number & 0xFFFF) + " (HRESULT " + e.number + "): " + e.description);
}

// FileLib raises the platform's code, here 3 (the path was not found), in the low word.
var fileLib = new ActiveXObject("Orbex.FileLib");
try {
    fileLib.CurrentFolder = path + "\\No\\Such\\Folder";
} catch (e) {
    WScript.Echo("FileLib error: number " + (e.number & 0xFFFF) + ": " + e.description);
}

ini = null;
fileLib = null;
files.DeleteFile(path);
WScript.Echo("Done.");
