#include "lab/making/invented_names.hpp"

#include <array>
#include <span>

#include "base/text.hpp"

namespace twk::lab {
namespace {

constexpr std::array<std::string_view, 96> kGivenNames = {
    "Aaron",   "Adèle",    "Aisha",   "Alejandro", "Alice",    "Amélie", "Anders",     "André",   "Anja",
    "Annika",  "António",  "Åsa",     "Astrid",    "Beatriz",  "Benoît", "Birgit",     "Björn",   "Brigid",
    "Carlos",  "Cécile",   "Chiara",  "Chloé",     "Christof", "Claire", "Conor",      "Dagmar",  "Daniel",
    "Daphne",  "David",    "Désirée", "Diego",     "Eilidh",   "Elena",  "Elżbieta",   "Émile",   "Emma",
    "Erik",    "Esther",   "Fatima",  "Fiona",     "François", "Frida",  "Gareth",     "Giulia",  "Grace",
    "Günther", "Hana",     "Hélène",  "Hugo",      "Ian",      "Inês",   "Ingrid",     "Isabel",  "Jan",
    "Jasmine", "Jiří",     "João",    "Jonas",     "José",     "Julia",  "Jürgen",     "Karin",   "Katarzyna",
    "Kenji",   "Lars",     "Léa",     "Liam",      "Lourdes",  "Luca",   "Małgorzata", "Marc",    "Margaret",
    "María",   "Matthias", "Mei",     "Mikael",    "Niamh",    "Noémie", "Nuno",       "Øystein", "Paolo",
    "Pierre",  "Priya",    "Rafael",  "Renée",     "Ruth",     "Samuel", "Siân",       "Sofía",   "Stefan",
    "Søren",   "Thérèse",  "Tomás",   "Ulrike",    "Yasmin",   "Zoë"};

constexpr std::array<std::string_view, 120> kSurnames = {
    "Abbott",   "Acheson",   "Ahlström",  "Almeida",   "Álvarez",   "Andersson", "Baptiste",  "Barnes",
    "Bauer",    "Beaumont",  "Becker",    "Bélanger",  "Bianchi",   "Björklund", "Brennan",   "Brown",
    "Camões",   "Carvalho",  "Castañeda", "Chen",      "Clarke",    "Côté",      "Cox",       "D'Arcy",
    "Davies",   "de Vries",  "Dubois",    "Dvořák",    "Ekström",   "Evans",     "Fernández", "Fischer",
    "Fournier", "Freitas",   "García",    "Gauthier",  "Gonçalves", "González",  "Grant",     "Großmann",
    "Gruber",   "Gupta",     "Hansen",    "Håkansson", "Hernández", "Hofmann",   "Hughes",    "Ibrahim",
    "Ivanova",  "Jansen",    "Jensen",    "Johansson", "Jones",     "Jørgensen", "Kaya",      "Kelly",
    "Khan",     "Kowalski",  "Krüger",    "Lambert",   "Lefèvre",   "Lindqvist", "Lopez",     "Löwe",
    "MacLeod",  "Magnusson", "Martínez",  "Mbeki",     "Ménard",    "Meyer",     "Moreau",    "Müller",
    "Muñoz",    "Murphy",    "Nakamura",  "Navarro",   "Nguyen",    "Nielsen",   "Novák",     "Núñez",
    "O'Brien",  "O'Neill",   "Okafor",    "Olsen",     "Ortiz",     "Östberg",   "Patel",     "Pereira",
    "Petersen", "Picard",    "Piñeiro",   "Poulsen",   "Quinn",     "Ramírez",   "Rasmussen", "Ribeiro",
    "Richter",  "Rossi",     "Sánchez",   "Santos",    "Schäfer",   "Schröder",  "Silva",     "Singh",
    "Sjöberg",  "Smith",     "Sørensen",  "Stewart",   "Strauß",    "Suárez",    "Tanaka",    "Taylor",
    "Thompson", "Vásquez",   "Vogel",     "Walsh",     "Weiß",      "Wójcik",    "Young",     "Zimmermann"};

constexpr std::array<std::string_view, 24> kPlaces = {
    "London",  "Zürich",    "Dublin", "München",  "Lyon",     "Malmö",   "Lisboa",    "Kraków",
    "Bristol", "København", "Genève", "Porto",    "Madrid",   "Köln",    "Edinburgh", "Tromsø",
    "Torino",  "Bruxelles", "Leeds",  "Montréal", "Göteborg", "Sevilla", "Cardiff",   "Wien"};

constexpr std::array<std::string_view, 16> kDepartments = {
    "Accounts",     "Personnel",   "Sales, Europe", "Engineering", "Purchasing", "Legal",
    "Distribution", "Marketing",   "IT Operations", "Research",    "Helpdesk",   "Facilities",
    "Quality",      "Export Desk", "Payroll",       "Training"};

constexpr std::array<std::string_view, 20> kGroups = {
    "Accounts Staff",   "All Managers",       "Building Access", "Colour Printers", "Contractors",
    "Design Review",    "Expenses Approvers", "Field Engineers", "Finance Readers", "Helpdesk Staff",
    "Intranet Editors", "Laptop Users",       "Payroll Readers", "Project Archive", "Remote Access",
    "Sales Reports",    "Scanner Users",      "Stock Control",   "Travel Desk",     "VPN Users"};

constexpr std::array<std::string_view, 10> kTitles = {"Accountant", "Analyst",    "Assistant", "Buyer",
                                                      "Clerk",      "Consultant", "Engineer",  "Manager",
                                                      "Planner",    "Technician"};

constexpr std::size_t kLongestAccountName = 20;

/// Letters with accents in one text, the plain ones at the same places in the other.
constexpr std::u32string_view kAccented = U"àáâãäåæçèéêëìíîïñòóôõöøùúûüýÿßžšœłřżńčćśźďťňěů";
constexpr std::string_view kPlain = "aaaaaaaceeeeiiiinoooooouuuuyyszsolrznccszdtneu";
static_assert(kAccented.size() == kPlain.size());

std::string numbered(std::span<const std::string_view> names, std::size_t n) {
  std::string name(names[n % names.size()]);
  const std::size_t round = n / names.size();
  return round == 0 ? name : name + " " + std::to_string(round + 1);
}

}  // namespace

std::uint64_t SeededNumbers::next() {
  state_ += 0x9E3779B97F4A7C15U;
  std::uint64_t z = state_;
  z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
  return z ^ (z >> 31U);
}

std::string plain_letters(std::string_view name) {
  std::string out;
  for (const char32_t code : base::to_utf32(base::lower(name))) {
    const std::size_t accented = kAccented.find(code);
    if ((code >= U'a' && code <= U'z') || (code >= U'0' && code <= U'9')) {
      out.push_back(static_cast<char>(code));
    } else if (accented != std::u32string_view::npos) {
      out.push_back(kPlain[accented]);
    }
  }
  return out;
}

void InventedPeople::reserve(std::string_view account_name) {
  taken_.insert(base::lower(account_name));
}

Person InventedPeople::next() {
  Person person;
  person.given_name = kGivenNames.at(numbers_.below(kGivenNames.size()));
  person.surname = kSurnames.at(numbers_.below(kSurnames.size()));
  person.title = kTitles.at(numbers_.below(kTitles.size()));
  person.common_name = person.given_name + " " + person.surname;
  const unsigned same = ++same_name_[person.common_name];
  if (same > 1)
    person.common_name += " (" + std::to_string(same) + ")";
  const std::string stem = plain_letters(person.given_name).substr(0, 1) + plain_letters(person.surname);
  do {
    const unsigned count = ++same_account_[stem];
    const std::string suffix = count == 1 ? std::string() : std::to_string(count);
    person.account_name = stem.substr(0, kLongestAccountName - suffix.size()) + suffix;
  } while (!taken_.insert(person.account_name).second);
  return person;
}

std::string place_name(std::size_t n) {
  return numbered(kPlaces, n);
}
std::string department_name(std::size_t n) {
  return numbered(kDepartments, n);
}
std::string group_name(std::size_t n) {
  return numbered(kGroups, n);
}

}  // namespace twk::lab
