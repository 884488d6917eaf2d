// Orbex from JScript: registry keys, typed values, optional arguments and errors.
// Run it with: cscript //nologo registry.js
var vqDWORD = 4, vqInvalidArgument = -2147221401;   // JScript does not read the type library

var reg = new ActiveXObject("Orbex.RegLib");
var settings = reg.CurrentUser.CreateSubKey("Software\\OrbexExamples\\JScript");
settings.SetValue("Greeting", "Hello");              // ValueType left out: vqString
settings.SetValue("Count", 42, vqDWORD);
WScript.Echo("Key: " + settings.Name);
WScript.Echo("Greeting = " + settings.GetValue("Greeting"));
WScript.Echo("Count + 1 = " + (settings.GetValue("Count") + 1));
WScript.Echo("Missing = " + settings.GetValue("Missing", "(default)"));
WScript.Echo("Values: " + settings.ValueCount + ", sub-keys: " + settings.SubKeyCount);

// A property that takes an argument is called like a method.
WScript.Echo("Remote root: " + reg.LocalMachine("\\\\server").MachineName);

// The name lists are String() arrays: JScript can hold one and pass it on, but VBArray
// takes only arrays of Variant and refuses it.
var names = settings.GetValueNames();
try {
    new VBArray(names);
} catch (e) {
    WScript.Echo("VBArray refuses a String() array: " + e.description);
}

// A failure is thrown as an Error whose number is the whole HRESULT. The registry's numbers
// are HRESULTs already; the low word holds the run-time numbers and platform codes.
try {
    reg.CurrentUser.DeleteSubKey("Software\\OrbexExamples\\NoSuchKey", true);
} catch (e) {
    if (e.number == vqInvalidArgument)
        WScript.Echo("Error " + e.number + ": " + e.description);
}

settings.CloseKey();
settings = null;
reg.CurrentUser.DeleteSubKeyTree("Software\\OrbexExamples\\JScript");
if (reg.CurrentUser.OpenSubKey("Software\\OrbexExamples").SubKeyCount == 0)
    reg.CurrentUser.DeleteSubKey("Software\\OrbexExamples");
reg = null;
CollectGarbage();   // JScript releases objects when it collects them
WScript.Echo("Done.");
