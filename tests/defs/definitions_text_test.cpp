#include "defs/definitions_text.h"

#include <gtest/gtest.h>

#include "engine/engine_fixture.h"

namespace {

constexpr char kDefinitions[] = R"(<xclean_def version='4' date='today'>
<Category Name='C' Help='One | two.'><Application Name='A'>
<Entity Name='E' Help='*Help*'><i Type='RegKey' Location='HKCU\a' Action='All'/>
<i Type='RegValue' Location='HKLM\a' ValueName='v' Action='All'/><i Type='File' Location='C:\a*' Action='All'/>
<i Type='Folder' Location='C:\a\' Action='All'/><i Type='Folder' Location='C:\a\*.b' Action='All'/>
<i Type='IniValue' Location='C:\%x%\a.ini' ValueName='[s]k' Action='All'/></Entity>
<Entity Name='F/G' Default='0'><i Type='Folder' Location='%recyclebin%\' Action='All'/>
<i Type='Folder' Location='C:\' Action='All'/><i Type='x' Location='y' Action='All'/></Entity></Application>
<Application Name='AA' Default='0' InstallLocation='C:\none'><Entity Name='E'><i Type='File' Location='C:\b'
Action='All'/></Entity></Application></Category></xclean_def>)";

constexpr char kSecondEntity[] = R"(C
  A
    F/G  (off by default)
      folder  the recycle bin
      folder  C:\  (all in it)  (protected: never searched)
      nothing, for its type is not known
)";

class DefinitionsText : public EngineTest {
  protected:
    DefinitionsText() {
        WriteDefinitions(kDefinitions);
        EXPECT_TRUE(LoadWithoutChoices(*engine, definitionsFile));
    }
};

TEST_F(DefinitionsText, ExplainsWhatEachItemLooksAt) {
    EXPECT_EQ(ExplainText(*engine, {"C/A/E", "C/AA"}), R"(C
  A
    E
      key     HKCU\a  (all in it)
      value   HKLM\a : v
      file    C:\a*
      folder  C:\a\  (all in it)
      folder  C:\a\  (files that fit *.b, at any depth)
      ini     C:\%x%\a.ini : [s]k  (a variable is not known on this machine)
  AA  (off by default)  (not on this machine: not searched)
    E
      file    C:\b
)");
    EXPECT_EQ(ExplainText(*engine, {"C/A/F/G"}), kSecondEntity);
    EXPECT_EQ(ExplainText(*engine, {"C/A/F"}), kSecondEntity) << "a name may hold slashes";
    EXPECT_EQ(ExplainText(*engine, {"c"}), "");
}

}  // namespace
