"""The words of eight languages that papers are made of."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Tongue:
    number: tuple  # labels of what identifies a paper
    person: tuple  # labels of whom it is for
    date: str
    total: str
    titles: tuple
    page: str  # with {0} and {1}
    greeting: str
    prose: str
    first: str
    last: str
    right_to_left: bool = False


TONGUES = {
    "en": Tongue(
        ("Account", "Invoice No", "Policy number", "Reference"), ("Customer", "Member"), "Date", "Total",
        ("Statement of account", "Invoice", "Notice of renewal"), "Page {0} of {1}", "Dear customer,",
        "the amount of your last payment was booked with thanks and is shown below together with the charges for this "
        "quarter please keep these pages for your records as we do not send them twice if you have moved tell us soon",
        "Anna Peter Maria Robert Helen Colin Grace Martin Alice Edward", "Smith Jones Fowler Archer Webb Turner Hale "
        "Lindqvist Moss Barker"),
    "de": Tongue(
        ("Kontonummer", "Rechnungsnummer", "Kundennr.", "Vertrag Nr."), ("Kunde", "Versicherter"), "Datum", "Summe",
        ("Kontoauszug", "Rechnung", "Gehaltsabrechnung"), "Seite {0} von {1}", "Sehr geehrte Damen und Herren,",
        "den Betrag Ihrer letzten Zahlung haben wir dankend gebucht und weisen ihn unten zusammen mit den Kosten für "
        "dieses Quartal aus bitte bewahren Sie diese Seiten auf da wir sie nicht noch einmal schicken können",
        "Jürgen Käthe Björn Sabine Uwe Renate Günter Ilse Frank Heike", "Weiß Müller Schäfer Vogt Krüger Lehmann Böhm "
        "Nagel Otto Zander"),
    "fr": Tongue(
        ("Facture n°", "Référence", "Numéro client", "Dossier"), ("Client", "Titulaire"), "Date", "Total",
        ("Facture", "Relevé de compte", "Attestation"), "Page {0} sur {1}", "Madame, Monsieur,",
        "le montant de votre dernier paiement a été porté au compte avec nos remerciements et figure plus bas avec les "
        "frais de ce trimestre gardez ces pages car elles ne vous seront pas envoyées deux fois",
        "Élodie René Anaïs Luc Chloé Benoît Zoé Hervé Inès Théo", "Brûlé Lefèvre Garnier Petit Roux Faure Mercier "
        "Noël Perrin Gauthier"),
    "es": Tongue(
        ("Factura", "Contrato", "Número", "Expediente"), ("Cliente", "Titular"), "Fecha", "Importe",
        ("Factura", "Extracto", "Certificado"), "Página {0} de {1}", "Estimado cliente:",
        "el importe de su último pago se anotó en la cuenta y figura abajo junto con los gastos de este trimestre "
        "guarde estas páginas porque no se envían dos veces y avise pronto si cambia de domicilio",
        "Íñigo Lucía José Elena Raúl Marta Ángel Pilar Óscar Sonia", "Núñez Peña Ortiz Vega Ramos Ibáñez Soto Cano "
        "Marín Rubio"),
    "it": Tongue(
        ("Fattura", "Codice", "Polizza", "Pratica"), ("Cliente", "Intestatario"), "Data", "Totale",
        ("Fattura", "Estratto conto", "Busta paga"), "Pagina {0} di {1}", "Gentile cliente,",
        "la somma del suo ultimo pagamento è stata registrata con i nostri ringraziamenti ed è riportata sotto con le "
        "spese del trimestre conservi queste pagine perché non vengono spedite due volte",
        "Niccolò Giulia Marco Elisa Paolo Chiara Dario Irene Luca Sara", "Rossi Conti Gallo Ferri Costa Greco Longo "
        "Serra Villa Riva"),
    "pl": Tongue(
        ("Rachunek", "Umowa", "Numer", "Faktura"), ("Klient", "Pracownik"), "Data", "Razem",
        ("Wyciąg", "Faktura", "Pasek wynagrodzenia"), "Strona {0} z {1}", "Szanowni Państwo,",
        "kwota ostatniej wpłaty została zaksięgowana i jest podana poniżej razem z opłatami za ten kwartał prosimy "
        "zachować te strony ponieważ nie wysyłamy ich po raz drugi",
        "Łucja Jakub Zofia Paweł Agnieszka Michał Żaneta Tomasz Ewa Jan", "Wiśniewska Nowak Zając Wójcik Mazur Król "
        "Dudek Pawlak Sikora Baran"),
    "tr": Tongue(
        ("Hesap", "Fatura", "Poliçe", "Sözleşme"), ("Müşteri", "Sigortalı"), "Tarih", "Toplam",
        ("Hesap özeti", "Fatura", "Bordro"), "Sayfa {0} / {1}", "Sayın müşterimiz,",
        "son ödemenizin tutarı teşekkürlerimizle hesabınıza işlenmiş olup aşağıda bu üç ayın giderleriyle birlikte "
        "gösterilmiştir lütfen bu sayfaları saklayınız çünkü ikinci kez gönderilmez",
        "Çağla Mehmet Ayşe Burak Elif İsmail Gül Kerem Şule Ömer", "Yıldız Kaya Demir Şahin Çelik Arslan Doğan Kılıç "
        "Aydın Öztürk"),
    "he": Tongue(
        ("חשבון", "חשבונית", "פוליסה", "תיק"), ("לקוח", "מבוטח"), "תאריך", "סכום",
        ("דף חשבון", "חשבונית מס", "אישור"), "עמוד {0} מתוך {1}", "לקוח נכבד,",
        "סכום התשלום האחרון נרשם בתודה ומופיע להלן יחד עם החיובים של רבעון זה נא לשמור את הדפים האלה כי לא נשלח "
        "אותם שוב אם עברתם דירה הודיעו לנו בהקדם",
        "אבי דנה משה רות יוסי נועה גיל תמר עמוס שרה", "כהן לוי מזרחי פרץ ביטון אזולאי דהן אברהם פרידמן שפירא",
        right_to_left=True),
}
