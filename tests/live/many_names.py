"""Three hundred lines of people for an import: names in many scripts, hostile characters, names that are too long, taken, or
compared in more than one way. First and last names, without a middle one; every comma separates."""

SCRIPTS = [
    "Éva Ődön", "Łukasz Żółć", "Þór Ðís", "Ñandú Øre", "Æsa Œuf", "Ümit İşık", "Rū̃ta Žiogaitė", "Nguyễn Ánh", "Nguyê\u0303n A\u0301nh",
    "e\u0301va Combining", "Kaʻiulani ʻĀina", "Иван Петров", "Щукин Ёжиков", "Ђорђе Њ́егош", "Γιάννης Παπάς", "ΑΣ Final", "Ὀδυσσεύς Ἰθακήσιος",
    "Արամ Խաչատրյան", "გიორგი ბერიძე", "ᲒᲘᲝᲠᲒᲘ ბერიძე", "محمد علي", "مُحَمَّد عَلِيّ", "علی\u200cرضا محمدی", "לוי כהן", "דָּוִד כֹּהֵן", "ܝܘܚܢܢ ܣܘܪܝ",
    "አበበ በቀለ", "अमित कुमार", "क्\u200dष श्री", "অমিত রায়", "ਗੁਰਪ੍ਰੀਤ ਸਿੰਘ", "અમિત પટેલ", "முருகன் செல்வம்", "రాము రెడ్డి", "ರಾಜು ಗೌಡ", "രാജൻ നായർ",
    "නිමල් පෙරේරා", "สมชาย ใจดี", "ກິ່ງ ສຸກ", "အောင် ဆန်း", "សុខ ដារា", "བསྟན འཛིན", "ᠮᠣᠩᠭᠣᠯ ᠬᠦᠮᠦᠨ", "ᏣᎳᎩ ᏍᏏᏉᏯ", "ᐃᓄᒃ ᑎᑎᕋᖅ", "山田 太郎", "𠮷田 𩸽",
    "やまだ タロウ", "ﾔﾏﾀﾞ ﾀﾛｳ", "ＡＢＣ ＤＥＦ", "김 철수", "\u1100\u1175\u11b7 \u110e\u1165\u11af\u1109\u116e", "陳 大文", "ⴰⵎⴰⵣⵉⵖ ⵉⴷⵉⵔ", "ߒߞߏ ߓߊ", "ꦗꦮ ꦏꦧꦶ", "ꕙꔤ ꕚꕌ", "ꯃꯅꯤ ꯄꯨꯔ", "𐌰𐌱 𐌲𐌳", "𞤀𞤣 𞤂𞤢", "𐐀𐐁 𐐨𐐩",
    "😀 Smile", "👩\u200d👩\u200d👧 Family", "🇩🇪 Flag", "☺\ufe0f Text", "𝒜 Math", "x² y³", "① Ⅳ", "ﬁne Ligature", "Ĳsbrand ĳ", "ſ Long", "Z̷̨̛͉̗ A\u0301\u0302\u0303\u0304",
    "\u0301 Alone", "O'Brien Pat", "’Curly ’tHooft", "Jean-Luc Picard", "Straße Groß",
]
# Which of two is taken, the server decides by its own comparison.
ALIKE = [
    ("Masse", "MASSE", "Maße", "MAẞE"), ("Café", "CAFÉ", "Cafe\u0301", "Cafe"), ("i", "I", "İ", "ı"), ("Петр", "ПЕТР", "Пётр"),
    ("Σίσυφος", "ΣΊΣΥΦΟΣ", "σίσυφοσ"), ("ﬁ", "fi", "FI"), ("か", "カ", "ｶ"), ("Å", "\u212b", "å", "A\u030a"), ("ǆ", "Ǆ", "ǅ"), ("Ω", "\u2126", "ω"),
    ("µ", "μ", "Μ"), ("K", "\u212a"), ("Æ", "AE"), ("ａ", "a"), ("한", "\u1112\u1161\u11ab"), ("é́", "e\u0301\u0301"), ("𐐀", "𐐨"), ("ß", "ss"),
]
CLASHES = ["Al,,Taken", "Bo,,Twice", "Bo,,Twice", "bo,,TWICE", "Only", ",,", "Bo,,Twice", ",,Last", "Administrator,,", "Guest,,", "krbtgt,,",
           "Choir,,", "Domain,,Admins", "DC1$,,", "WS1$,,", "WS1,,", "Contact,,Person", "con,,prn", "nul,,", "1,,2", "007,,Bond", "-,,-"]
# In a field, and as the first name as a whole.
CHARACTERS = "\"/\\[]:|=+*?<>@#%&()$!^~`{}'._ \t;"
UNSEEN = "\u00a0\u00ad\u0085\u061c\u115f\u180e\u2000\u200b\u200c\u200d\u200e\u2028\u202e\u2060\u3000\u3164\ufeff\ufffd\ue000\u0378\U0010fffd\x7f\x01"
TEXTS = [
    "#Hash,,#Hash", "Trail ,,Blank ", "   ,,   ", "  Sp  ,,  ace ", "Two  Sp,,In  ner", ".Dot,,Lead", "Trail.,,Dot.", "Back\\,,Slash\\", "a+b=c,,d;e<f>",
    "\"Quoted\",,\"Twice\"", "a\"\"b,,\"", "*,,*", "(|(cn=*)),,Filter", "Paren)(uid=*,,x", "CN=x,,OU=y", "\\2a,,\\00", "\\,,\\\\", "%First%,,%Last%",
    "%IMPORT1%,,%UserName%", "%,,%%", "..\\..\\Up,,../..", "./,,..", "C:,,D:", "$(id),,`id`", "-x,,--help", "NT AUTHORITY\\SYSTEM,,x", "S-1-5-18,,Sid",
    "a@b,,c@d", "<SID=1>,,x", "null,,NULL", "0x41,,1e9", "O'Neil,,d''Arcy",
]
# As a spreadsheet has them, first and last name.
ROWS = [
    ("Smith, Jr.", "O\"Neil"), ("#Hash", "a+b=c;d<e>"), ("Back\\slash\\", "/slash/"), (" Lead", "Trail "), ("\"Quoted\"", "\"\""), ("*)(cn=*", "\\2a\\00"),
    ("Line\nbreak", "Two"), ("Tab\there", "Two"), ("CN=x,OU=y", "uid=a+cn=b"), ("'; DROP", "`id` $(id)"), ("%First%", "%IMPORT2%"), ("עברית, שלום", "e\u0301,é"),
    ("𠮷" * 32, "X" * 64), ("ﷺ, ", "👩\u200d👧"),
]


def many_names():
    yield from (name.replace(" ", ",,") for name in SCRIPTS)
    yield from (name.replace(" ", ",7,") for name in SCRIPTS[::5])
    yield from (f"Alike{number},,X{name}" for number, group in enumerate(ALIKE) for name in group)
    yield from CLASHES
    yield from TEXTS
    for character in CHARACTERS:
        yield f"A{character}b,,C{'' if character == chr(34) else character}d"
    for character in UNSEEN:
        yield f"U{character}n,,Seen{ord(character):x}"
    yield from (f"{'X' * length},,Y{'Z' * length}" for length in (5, 9, 10, 19, 20, 21, 31, 32, 33, 63, 64, 65, 100, 300))
    yield from (f"{letter * length},,{'ü' * length}" for letter in ("é", "Ж", "𠮷") for length in (9, 10, 32, 33, 64))
    yield from (f"Plain{number},,User{number}" for number in range(20))
