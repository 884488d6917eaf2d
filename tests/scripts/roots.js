// RegLib from JScript: a root's name, its counts, and an optional argument left out.
var failures = 0;
function check(condition, what) {
    if (!condition) {
        WScript.Echo("FAILED: " + what);
        failures++;
    }
}

var reg = new ActiveXObject("Orbex.RegLib");
check(reg.LocalMachine.Name == "HKEY_LOCAL_MACHINE\\", "LocalMachine.Name");
check(reg.CurrentUser("srv").MachineName == "\\\\srv", "machine name from JScript");
check(reg.DynData == null, "DynData is null on the NT family");
check(reg.Users.SubKeyCount > 0, "Users has sub-keys");

if (failures == 0) WScript.Echo("ORBEX-SCRIPT-PASSED");
