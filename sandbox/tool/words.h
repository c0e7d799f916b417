// The words of the generated data.
#pragma once

#include <string_view>

namespace orvan::words {

inline constexpr std::string_view kFirstNames[] = {"Anna",  "Ben",    "Carla", "David", "Elif",  "Finn",   "Greta",
                                                   "Henri", "Inés",   "Jonas", "Klara", "Lars",  "Mónica", "Nils",
                                                   "Olga",  "Pieter", "Quinn", "Rosa",  "Søren", "Tom"};
inline constexpr std::string_view kSurnames[] = {"Bakker",  "Becker",  "Costa",  "De Vries", "Fischer", "García",
                                                 "Jansen",  "Keller",  "Larsen", "Moreau",   "Müller",  "Novak",
                                                 "O'Neill", "Peeters", "Rossi",  "Schmidt",  "Visser",  "Weiß"};
inline constexpr std::string_view kCities[] = {"Apeldoorn", "Barneveld", "Ede",      "Köln",    "Liège",  "Lyon",
                                               "Malmö",     "Münster",   "Nijmegen", "Utrecht", "Zürich", "Zwolle"};
inline constexpr std::string_view kStreets[] = {"Dorpsstraat", "Hauptstraße", "High Street",    "Kerkstraat",
                                                "Lindenweg",   "Marktplatz",  "Rue de la Gare", "Stationsplein"};
inline constexpr std::string_view kTrades[] = {"Bakery",  "Clinic",    "Dairy",      "Foundry", "Hotel",
                                               "Laundry", "Logistics", "Paper Mill", "School",  "Shipyard"};
inline constexpr std::string_view kMakers[] = {"Arvo", "Brandt & Zn", "Corvus", "Delta Therm", "Ekko"};

struct Product {
  std::string_view group;
  std::string_view name;
};
inline constexpr Product kProducts[] = {
    {"BOILER", "Heating boiler"}, {"CHILL", "Cooling unit"}, {"COMPR", "Compressor"},  {"DOOR", "Industrial door"},
    {"LIFT", "Passenger lift"},   {"PACK", "Packing line"},  {"PUMP", "Pump station"}, {"SCALE", "Floor scale"}};

struct Named {
  std::string_view code;
  std::string_view description;
};
inline constexpr Named kServiceTypes[] = {
    {"INS", "Installation"},      {"REP", "Repair"},          {"PRV", "Preventive upkeep"},
    {"INP", "Inspection"},        {"CAL", "Calibration"},     {"EMG", "Emergency call"},
    {"UPG", "Upgrade"},           {"WAR", "Warranty repair"}, {"CON", "Contract visit"},
    {"TRN", "Customer training"}, {"REM", "Removal"},         {"ADV", "Advice"}};
inline constexpr Named kSkills[] = {{"ELEC", "Electricity"},    {"HYDR", "Hydraulics"},  {"PNEU", "Pneumatics"},
                                    {"PLC", "Control systems"}, {"GAS", "Gas fitting"},  {"COOL", "Refrigeration"},
                                    {"WELD", "Welding"},        {"LIFT", "Lift safety"}, {"SOFT", "Software"},
                                    {"MECH", "Mechanics"},      {"CALB", "Calibration"}, {"HIGH", "Work at height"},
                                    {"TRN", "Training"},        {"DOOR", "Door drives"}};
inline constexpr Named kFaults[] = {{"NOISE", "Makes noise"}, {"LEAK", "Leaks"},           {"STOP", "Stands still"},
                                    {"HEAT", "Overheats"},    {"ALARM", "Shows an alarm"}, {"DRIFT", "Measures wrong"}};

}  // namespace orvan::words
