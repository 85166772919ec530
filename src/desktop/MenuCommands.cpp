#include "desktop/MenuCommands.h"

#include "app/StringTable.h"
#include "translate/LanguageCatalogue.h"

namespace quillora
{

namespace
{

using K = MenuItemDef;
using C = Command;

// The caption offset of a language item: the catalogue's own name of that language.
int nameOf(const char* code)
{
    return LanguageNames + languageIndexForCode(QLatin1String(code));
}

} // namespace

const QVector<MenuItemDef>& menuTable()
{
    static const QVector<MenuItemDef> table = {
        {"", "menuF", "&File", K::Submenu, -1, MenuFile, "FILEMENU"},
        {"FILEMENU", "menuF0", "Translate", K::Normal, 0, MenuTranslate, "", C::Translate},
        {"FILEMENU", "FILE1:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"FILEMENU", "menuF1", "Open...", K::Normal, 1, MenuOpen, "", C::Open},
        {"FILEMENU", "menuF2", "Save Results", K::Normal, 2, MenuSaveResults, "", C::SaveResults},
        {"FILEMENU", "FILE2:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"FILEMENU", "menuF3", "Exit", K::Normal, 3, MenuExit, "", C::Exit},

        {"", "menuS", "&Setting", K::Submenu, -1, MenuSetting, "EDITMENU"},
        {"EDITMENU", "menuS0", "Auto Run When Logon Windows", K::Check, -1, MenuAutoRun, "", C::AutoRun},
        {"EDITMENU", "menuS5", "Auto copy the translation", K::Check, -1, MenuAutoCopy, "", C::AutoCopy},
        {"EDITMENU", "SET1:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS1", "Options", K::Normal, 4, MenuOptions, "", C::Options},
        {"EDITMENU", "SET2:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS2", "Language", K::Submenu, -1, MenuLanguage, "LANGUAGEMENU"},
        {"EDITMENU", "SET4:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS4", "Seting Font...", K::Normal, 10, MenuFont, "", C::Font},
        {"EDITMENU", "SET3:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS3", "STYLE", K::Submenu, -1, MenuStyle, "STYLEMENU"},

        {"LANGUAGEMENU", "menuS201", "English", K::Option, -1, nameOf("en"), "", C::Language, 1},
        {"LANGUAGEMENU", "menuS202", "Chinese(Simplified)", K::Option, -1, nameOf("zh-CN"), "", C::Language,
         2},
        {"LANGUAGEMENU", "menuS203", "Chinese(Traditional)", K::Option, -1, nameOf("zh-TW"), "", C::Language,
         3},
        {"LANGUAGEMENU", "menuS204", "Thai", K::Option, -1, nameOf("th"), "", C::Language, 4},
        {"LANGUAGEMENU", "menuS205", "Indonesian", K::Option, -1, nameOf("id"), "", C::Language, 0},
        {"LANGUAGEMENU", "menuS206", "Malay", K::Option, -1, nameOf("ms"), "", C::Language, 0},
        {"LANGUAGEMENU", "menuS207", "Hindi", K::Option, -1, nameOf("hi"), "", C::Language, 0},
        {"LANGUAGEMENU", "menuS208", "Turkish", K::Option, -1, nameOf("tr"), "", C::Language, 0},
        {"LANGUAGEMENU", "menuS209", "Polish", K::Option, -1, nameOf("pl"), "", C::Language, 0},
        {"LANGUAGEMENU", "menuS210", "Arabic", K::Option, -1, nameOf("ar"), "", C::Language, 0},
        {"LANGUAGEMENU", "menuS211", "Korean", K::Option, -1, nameOf("ko"), "", C::Language, 0},
        {"LANGUAGEMENU", "menuS212", "Spanish", K::Option, -1, nameOf("es"), "", C::Language, 5},
        {"LANGUAGEMENU", "menuS213", "Slovak", K::Option, -1, nameOf("sk"), "", C::Language, 6},
        {"LANGUAGEMENU", "menuS214", "French", K::Option, -1, nameOf("fr"), "", C::Language, 7},

        {"STYLEMENU", "STYLE:0", "Office XP", K::Option, -1, MenuStyleOfficeXp, "", C::Style, 0},
        {"STYLEMENU", "STYLE:1", "Office 2003", K::Option, -1, MenuStyleOffice2003, "", C::Style, 1},
        {"STYLEMENU", "STYLE:2", "MS Money", K::Option, -1, MenuStyleSkyBlue, "", C::Style, 2},
        {"STYLEMENU", "STYLE:3", "System", K::Option, -1, MenuStyleSystem, "", C::Style, 3},

        {"", "menuH", "&Help", K::Submenu, -1, MenuHelp, "HELPMENU"},
        {"HELPMENU", "menuH1", "Online Help", K::Normal, -1, MenuOnlineHelp, "", C::OnlineHelp},
        {"HELPMENU", "menuH5", "Web Vesperin", K::Normal, -1, MenuWebHome, "", C::WebHome},
        {"HELPMENU", "menuH2", "Vesperin Home", K::Normal, 6, MenuHome, "", C::Home},
        {"HELPMENU", "menuH3", "About Vesperin", K::Normal, 7, MenuAbout, "", C::About},
        {"HELPMENU", "HELP:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"HELPMENU", "menuH4", "Google Translate Home", K::Normal, 8, MenuGoogleHome, "", C::GoogleHome},

        {"", "menuSite", "&Cool WebSite", K::Submenu, -1, MenuSites, "SITEMENU"},
        {"SITEMENU", "menuSite10", "", K::Normal, -1, MenuFamousSites, "", C::SitesHome},

        {"", "menuSYS", "SYS", K::Submenu, -1, 0, "SYSMENU"},
        {"SYSMENU", "menuSYS1", "Open Translate Tool (F11)", K::Normal, 9, MenuShowHide, "", C::ShowHide},
        {"SYSMENU", "menuSYS2", "Options", K::Normal, 4, MenuOptions, "", C::Options},
        {"SYSMENU", "SYS:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"SYSMENU", "menuSYS3", "EXIT", K::Normal, 3, MenuExit, "", C::Exit},
    };
    return table;
}

CommandChoice commandForKey(const QString& key)
{
    for (const MenuItemDef& row : menuTable()) {
        if (row.key == key)
            return {row.command, row.argument, key};
    }
    // The sites list's items, "menuSite0" onwards; "menuSite10" is in the table.
    static const QString site = QStringLiteral("menuSite");
    bool ok = false;
    const int index = key.startsWith(site) ? key.mid(site.size()).toInt(&ok) : -1;
    if (ok && index >= 0 && key == site + QString::number(index))
        return {Command::Site, index, key};
    return {Command::None, 0, key};
}

} // namespace quillora
