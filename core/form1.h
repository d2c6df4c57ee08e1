/// The main window `Form1`: its menus and controls under their fixed names.
/// It knows nobody: each folder's install procedure puts its handlers on the controls that it
/// serves, and an entry without a handler is disabled. Captions here are the German base captions;
/// the tags are text numbers of caption and tool tip.
#pragma once

#include "core/code_page.h"
#include "core/window.h"

#include <memory>
#include <vector>

namespace velkoro {

/// Entries of the drop-down `sort`, in order. The names of 0 to 13 are texts 7240 to 7253.
enum class sort_entry {
    name,
    comment,
    altitude,
    symbol,
    proximity,
    ref_distance,
    nearest_wp,
    latitude,
    longitude,
    ref_bearing,
    routes,
    route_distance,
    track_distance,
    date
};
inline constexpr int sort_entries = 14;
inline constexpr int sort_first_text = 7240;

struct form1_window {
    window form{"Form1", "VELkoro"};

    // File
    control datei{form, kind::menu, "datei", {.caption = "&Datei", .tag = "7100"}};
    control Wayp_Datei_lesen{
        form, datei, "Wayp_Datei_lesen", {.caption = "&öffnen"_w, .tag = "7101 7401"}};
    control Wayp_Datei_Speich[2] = {
        {form, datei, "Wayp_Datei_Speich", {.caption = "&speichern", .tag = "7102 7402"}, 0},
        {form,
         datei,
         "Wayp_Datei_Speich",
         {.caption = "s&peichern unter...", .tag = "7103 7403"},
         1}};
    control datei_s1{form, datei, "datei_s1", {.caption = "-"}};
    control druck{form, datei, "druck", {.caption = "&drucken...", .tag = "7104 7404"}};
    control datei_s2{form, datei, "datei_s2", {.caption = "-"}};
    control Ende{form, datei, "Ende", {.caption = "Programm &beenden", .tag = "7105 7405"}};

    // Receiver
    control gar{form, kind::menu, "gar", {.caption = "&Garmin", .tag = "7110"}};
    control Wayp_Garmin_lesen{
        form, gar, "Wayp_Garmin_lesen", {.caption = "lesen: &WP", .tag = "7111 7411"}};
    control R_Garmin_Lesen{
        form, gar, "R_Garmin_Lesen", {.caption = "lesen: &Routen", .tag = "7112 7412"}};
    control T_Garmin_Lesen{
        form, gar, "T_Garmin_Lesen", {.caption = "lesen: &Track", .tag = "7113 7413"}};
    control Wayp_Garmin_Speichern{
        form, gar, "Wayp_Garmin_Speichern", {.caption = "&schreiben...", .tag = "7114 7414"}};
    control gar_off{form, gar, "gar_off", {.caption = "&ausschalten", .tag = "7115 7415"}};

    // Edit
    control bbb{form, kind::menu, "bbb", {.caption = "&Bearbeiten", .tag = "7120"}};
    control suchen{form, bbb, "suchen", {.caption = "&Suchen...", .tag = "7121 7421"}};
    control neu_mitt{
        form, bbb, "neu_mitt", {.caption = "neuer WP aus &Mittelwert", .tag = "7122 7422"}};
    control wayp_neu{form, bbb, "wayp_neu", {.caption = "&neue Liste", .tag = "7123 7423"}};
    control Zeit_LS{form, bbb, "Zeit_LS", {.caption = "&Zeitzone dieser Liste", .tag = "7124"}};
    control Zeit_LZ[6] = {
        {form, Zeit_LS, "Zeit_LZ", {.caption = "UTC", .tag = "7190 7928"}, 0},
        {form, Zeit_LS, "Zeit_LZ", {.caption = "Berlin (MEZ)", .tag = "7191 7928"}, 1},
        {form, Zeit_LS, "Zeit_LZ", {.caption = "London", .tag = "7192 7928"}, 2},
        {form, Zeit_LS, "Zeit_LZ", {.caption = "New York", .tag = "7193 7928"}, 3},
        {form, Zeit_LS, "Zeit_LZ", {.caption = "Sydney", .tag = "7194 7928"}, 4},
        {form, Zeit_LS, "Zeit_LZ", {.caption = "andere...", .tag = "7195 7928"}, 5}};
    control Zeit_LH{form, Zeit_LS, "Zeit_LH", {.caption = "Hilfe...", .tag = "7196 7929"}};
    control bbb_s1{form, bbb, "bbb_s1", {.caption = "-"}};
    control mark_recover{
        form, bbb, "mark_recover", {.caption = "Markierung wiederherstellen", .tag = "7125 7425"}};
    control mark_inv{
        form, bbb, "mark_inv", {.caption = "Markierung &umkehren", .tag = "7126 7426"}};
    control mark_g{form, bbb, "mark_g", {.caption = "&Gruppe markieren...", .tag = "7127 7427"}};
    control B_alle{form, bbb, "B_alle", {.caption = "&alle markieren", .tag = "7128 7428"}};
    control bbb_s2{form, bbb, "bbb_s2", {.caption = "-"}};
    control B_lösch{
        form, bbb, "B_lösch", {.caption = "markierte Waypoints &löschen"_w, .tag = "7129 7429"}};
    control B_aus{
        form, bbb, "B_aus", {.caption = "markierte Waypoints a&usschneiden", .tag = "7130 7430"}};
    control B_kop{
        form, bbb, "B_kop", {.caption = "markierte Waypoints &kopieren", .tag = "7131 7431"}};
    control B_einfüg{form, bbb, "B_einfüg", {.caption = "&einfügen"_w, .tag = "7132 7432"}};
    control B_test{form, bbb, "B_test", {.caption = "Zwischenablage &testen", .tag = "7133 7433"}};

    // System
    control mg{form, kind::menu, "mg", {.caption = "S&ystem", .tag = "7140"}};
    control m_lang{form, mg, "m_lang", {.caption = "Sprache / Language", .tag = "7141"}};
    std::vector<std::unique_ptr<control>> m_lang_sel{}; ///< one per language of the text table
    control gar_ident{
        form, mg, "gar_ident", {.caption = "&Empfänger Eigenschaften"_w, .tag = "7142 7442"}};
    control p{form, mg, "p", {.caption = "&Serieller Anschluss", .tag = "7143"}};
    control menu_com[10] = {
        {form, p, "menu_com", {.caption = "COM&1", .tag = "0 7931"}, 1},
        {form, p, "menu_com", {.caption = "COM&2", .tag = "0 7931"}, 2},
        {form, p, "menu_com", {.caption = "COM&3", .tag = "0 7931"}, 3},
        {form, p, "menu_com", {.caption = "COM&4", .tag = "0 7931"}, 4},
        {form, p, "menu_com", {.caption = "COM&5", .tag = "0 7931"}, 5},
        {form, p, "menu_com", {.caption = "COM&6", .tag = "0 7931"}, 6},
        {form, p, "menu_com", {.caption = "COM&7", .tag = "0 7931"}, 7},
        {form, p, "menu_com", {.caption = "COM&8", .tag = "0 7931"}, 8},
        {form, p, "menu_com", {.caption = "&automatisch", .tag = "7144 7932"}, 9},
        {form, p, "menu_com", {.caption = "&USB", .tag = "7145 7933"}, 100}};
    control backup{form, mg, "backup", {.caption = "&Backup-Dateien", .tag = "7146 7446"}};
    control pc{form, mg, "pc", {.caption = "PC-&Uhr stellen", .tag = "7147 7447"}};
    control Zeit_S{form, mg, "Zeit_S", {.caption = "&Zeitzone zuhause", .tag = "7148"}};
    control Zeit_Z[6] = {
        {form, Zeit_S, "Zeit_Z", {.caption = "UTC", .tag = "7190 7930"}, 0},
        {form, Zeit_S, "Zeit_Z", {.caption = "Berlin (MEZ)", .tag = "7191 7930"}, 1},
        {form, Zeit_S, "Zeit_Z", {.caption = "London", .tag = "7192 7930"}, 2},
        {form, Zeit_S, "Zeit_Z", {.caption = "New York", .tag = "7193 7930"}, 3},
        {form, Zeit_S, "Zeit_Z", {.caption = "Sydney", .tag = "7194 7930"}, 4},
        {form, Zeit_S, "Zeit_Z", {.caption = "andere...", .tag = "7195 7930"}, 5}};
    control Zeit_H{form, Zeit_S, "Zeit_H", {.caption = "Hilfe...", .tag = "7196 7929"}};
    control back_b{form, mg, "back_b", {.caption = "&Hintergrund blau", .tag = "7149 7449"}};
    control ei_dist{form, mg, "ei_dist", {.caption = "Einheit für &Entfernung"_w, .tag = "7150"}};
    control einh[3] = {
        {form, ei_dist, "einh", {.caption = "&Kilometer", .tag = "7151 7934"}, 0},
        {form, ei_dist, "einh", {.caption = "&Meile", .tag = "7152 7934"}, 1},
        {form, ei_dist, "einh", {.caption = "&Nautische Meile", .tag = "7153 7934"}, 2}};
    control ei_s{form, mg, "ei_s", {.caption = "Einheit für &Geschwindigkeit"_w, .tag = "7154"}};
    control einh_s[3] = {{form, ei_s, "einh_s", {.caption = "km/h", .tag = "7155 7935"}, 0},
                         {form, ei_s, "einh_s", {.caption = "mph", .tag = "7156 7935"}, 1},
                         {form, ei_s, "einh_s", {.caption = "Knoten", .tag = "7157 7935"}, 2}};
    control ei_alt{form, mg, "ei_alt", {.caption = "Einheit für &Höhe"_w, .tag = "7158"}};
    control einh_alt[2] = {
        {form, ei_alt, "einh_alt", {.caption = "&Meter", .tag = "7159 7936"}, 0},
        {form, ei_alt, "einh_alt", {.caption = "&Fuß"_w, .tag = "7160 7936"}, 1}};
    control ei_grid{
        form, mg, "ei_grid", {.caption = "Einheit für metrische Koordinaten"_w, .tag = "7161"}};
    control ei_grid_u[4] = {
        {form, ei_grid, "ei_grid_u", {.caption = "&m", .tag = "7162 7937"}, 0},
        {form, ei_grid, "ei_grid_u", {.caption = "&km (mit Punkt)", .tag = "7163 7937"}, 1},
        {form, ei_grid, "ei_grid_u", {.caption = "-"}, 2},
        {form,
         ei_grid,
         "ei_grid_u",
         {.caption = "UTM: führende 0 ergänzen"_w, .tag = "7164 7938"},
         3}};

    // Profile
    control pr{form, kind::menu, "pr", {.caption = "&Profil", .tag = "7170"}};
    std::vector<std::unique_ptr<control>> prof{}; ///< one per stored profile
    control pr_s1{form, pr, "pr_s1", {.caption = "-"}};
    control prof_lösch{
        form, pr, "prof_lösch", {.caption = "Profil &löschen"_w, .tag = "7171 7471"}};
    control prof_neu{form, pr, "prof_neu", {.caption = "&neues Profil", .tag = "7172 7472"}};

    // Help
    control Hilfe{form, kind::menu, "Hilfe", {.caption = "&Hilfe", .tag = "7180"}};
    control hilf[3] = {
        {form, Hilfe, "hilf", {.caption = "&Inhalt", .tag = "7181 7939"}, 0},
        {form, Hilfe, "hilf", {.caption = "&Neu in dieser Version", .tag = "7182 7940"}, 1},
        {form, Hilfe, "hilf", {.caption = "&Über VELkoro..."_w, .tag = "7183 7941"}, 2}};

    // Body, top to bottom
    control wayp_titel{
        form, kind::text, "wayp_titel", {.tooltip = "Titel der Liste", .tag = "0 7500"}};
    control zeich_akt{
        form, kind::button, "zeich_akt", {.caption = "Track, &Zeichnung...", .tag = "7201 7501"}};
    control Routen_akt{
        form, kind::button, "Routen_akt", {.caption = "&Routen...", .tag = "7202 7502"}};
    control Rahmen1{form, kind::frame, "Rahmen1", {.caption = "Waypoints", .tag = "7203"}};
    control Edit_w[3] = {
        {form, kind::button, "Edit_w", {.caption = "ne&uer Waypoint", .tag = "7204 7504"}, 0},
        {form, kind::button, "Edit_w", {.caption = "&Edit", .tag = "7205 7505"}, 1},
        {form, kind::button, "Edit_w", {.caption = "&löschen"_w, .tag = "7206 7506"}, 2}};
    control R_W_einfüg{
        form, kind::button, "R_W_einfüg", {.caption = "&in Route einfügen"_w, .tag = "7207 7507"}};
    control sort_oben{
        form, kind::button, "sort_oben", {.caption = "&markierte nach oben", .tag = "7208 7508"}};
    control sort_h{form, kind::label, "sort_h", {.caption = "Sortiert nach", .tag = "7209"}};
    control sort{form, kind::combo, "sort", {.tag = "0 7509"}};
    control refp_h{form, kind::label, "refp_h", {.caption = "Referenzpunkt", .tag = "7210"}};
    control refp{form, kind::combo, "refp", {.tag = "0 7510"}};
    control koord_h{
        form, kind::label, "koord_h", {.caption = "Koordinaten: Format, Datum", .tag = "7211"}};
    control posform{form, kind::combo, "posform", {.tag = "0 7511"}};
    control Datum{form, kind::combo, "Datum", {.tag = "0 7512"}};
    control zone{form, kind::combo, "zone", {.tag = "0 7513", .visible = false}};
    control Waypl2{form, kind::list, "Waypl2", {.tag = "0 7917"}};
    control anz{form, kind::label, "anz", {.tag = "0 7918"}};
    control filnam{form, kind::label, "filnam"};
    control profil_anz{form, kind::label, "profil_anz", {.tag = "0 7919"}};
    control garmin{form, kind::label, "garmin", {.visible = false}}; ///< place of the serial line
    control DDE_1{form, kind::text, "DDE_1", {.visible = false}};    ///< link target
    control DDE_2{form, kind::text, "DDE_2", {.visible = false}};    ///< link client
    control wayp_big_timer{form, kind::timer, "wayp_big_timer", {.value = 200}};
};
extern form1_window Form1;

/// Disables every menu entry and button of the window that has no handler, so that what is not
/// installed cannot be chosen.
void disable_uninstalled(window& w);

} // namespace velkoro
