"""Namespaces to report on, as MOF."""

import pathlib

QUALIFIERS = (pathlib.Path(__file__).resolve().parents[1] /
              "support/mof/qualifiers.mof").read_text(encoding="utf-8")

MACHINE = QUALIFIERS + r'''
[Abstract] class T_Element { [Key, Description("What it is called.")] string Name; };
class T_System : T_Element { string Location; };
[Description("A disk.")] class T_DiskDrive : T_Element {
  [UNITS("Bytes"), DISPLAYFIXEDUNITS("Peta"), ABBREVIATEUNITS(true), NULLDISPLAY("Unknown")]
  uint64 Size;
  [Values{"Zero", "Failed", "Asleep"}] uint8 State = 1;
  string Never;
  [Description("Starts it anew.")] uint32 Reset(uint16 Mode);
};
class T_FileSystem : T_Element {
  [UNITS("Bytes"), DISPLAYFIXEDUNITS("Peta"), ABBREVIATEUNITS(true)] uint64 FileSystemSize;
  [UNITS("Bytes"), DISPLAYFIXEDUNITS("Peta"), ABBREVIATEUNITS(true)] uint64 AvailableSpace;
};
class T_Cpu : T_Element { uint32 NumberOfCores; };
class T_Cache : T_Element {
  uint16 Level; uint32 NumberOfCaches;
  [UNITS("Bytes"), DISPLAYFIXEDUNITS("Peta"), ABBREVIATEUNITS(true)] uint64 Size;
};
class T_Lonely : T_Element { };
[Association] class T_Contains {
  [Key] T_System REF GroupComponent;
  [Key] T_Element REF PartComponent;
};
[Association] class T_CacheOf {
  [Key] T_Cache REF Antecedent;
  [Key] T_Cpu REF Dependent;
};
instance of T_System as $Box { Name = "box"; Location = "rack 12"; };
instance of T_DiskDrive as $D1 { Name = "disk1"; Size = 2199023255552; State = 2; };
instance of T_DiskDrive as $D2 { Name = "disk2"; Size = 10737418240; State = 1; };
instance of T_DiskDrive as $D10 { Name = "disk10"; Size = 5368709120; State = 0; };
instance of T_DiskDrive as $D9 { Name = "disk9"; };
instance of T_FileSystem as $F { Name = "/"; FileSystemSize = 4096; AvailableSpace = 1024; };
instance of T_Cpu as $Cpu { Name = "cpu"; NumberOfCores = 4; };
instance of T_Cache as $L1 { Name = "L1 cache"; Level = 1; NumberOfCaches = 4; Size = 32768; };
instance of T_Cache as $L2 { Name = "L2 cache"; Level = 2; NumberOfCaches = 1; Size = 1048576; };
instance of T_Lonely { Name = "alone"; };
''' + "".join(f'''
instance of T_Contains {{ GroupComponent = $Box; PartComponent = ${part}; }};'''
              for part in ("D1", "D2", "D9", "D10", "F", "Cpu")) + '''
instance of T_CacheOf { Antecedent = $L1; Dependent = $Cpu; };
instance of T_CacheOf { Antecedent = $L2; Dependent = $Cpu; };
'''

# Text that would be markup, a script, a template, an address or a name of the language.
HOSTILE = QUALIFIERS + r'''
[Description("</script><script>owned = 1</script><img src=x onerror=\"owned = 1\"><!--")]
class constructor {
  [Key, Description("<b>bold</b> ${owned = 1} {{owned = 1}} <!--")] string Name;
  string __proto__; uint64 constructor; string toString[]; string hasOwnProperty;
};
[Association] class prototype_valueOf {
  [Key] constructor REF Antecedent;
  [Key] constructor REF Dependent;
};
instance of constructor as $A {
  Name = "<img src=x onerror=\"owned = 1\">"; __proto__ = "__proto__";
  constructor = 18446744073709551615; toString = {"<i>a</i>", "javascript:owned = 1"};
  hasOwnProperty = "</script><!--<script>owned = 1</script>";
};
instance of constructor as $B { Name = "\"'`&lt;b&gt;%00%zz#/class/ \x202e \x01 a"; };
instance of constructor as $C { Name = "javascript:owned = 1"; hasOwnProperty = ""; };
instance of constructor as $D { Name = ""; };
instance of prototype_valueOf { Antecedent = $A; Dependent = $B; };
instance of prototype_valueOf { Antecedent = $A; Dependent = $A; };
instance of prototype_valueOf { Antecedent = $C; Dependent = $D; };
'''


def large(parts):
    """One system with so many parts."""
    lines = [QUALIFIERS, '''
class T_System { [Key] string Name; };
class T_Part { [Key] string Name; uint32 Number; string Text; };
[Association] class T_Contains {
  [Key] T_System REF GroupComponent;
  [Key] T_Part REF PartComponent;
};
instance of T_System as $Box { Name = "box"; };''']
    for number in range(parts):
        lines.append(f'instance of T_Part as $P{number} {{ Name = "part{number}"; '
                     f'Number = {number * 7919 % parts}; Text = "text {number % 13}"; }};')
        lines.append(f"instance of T_Contains {{ GroupComponent = $Box; "
                     f"PartComponent = $P{number}; }};")
    return "\n".join(lines)
