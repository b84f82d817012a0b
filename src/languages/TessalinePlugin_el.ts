<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="el" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Λήψη εξάρτησης %1 από %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Φλας</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Αυτόματο</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Ανενεργό</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Κόκκινα μάτια</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Συμπληρωματικό</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Ισορροπία λευκού</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Ηλιακό φως</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Συννεφιά</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Πυρακτώσεως</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Φθορισμού</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Αντίθεση</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Κορεσμός</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Όξυνση</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Προσανατολισμός</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Κάμερα</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Λήψη</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Εικόνες</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Γίνεται σύνδεση στο %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Σύνδεση στο %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Όνομα χρήστη</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Κωδικός πρόσβασης</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Να με θυμάσαι</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Γίνεται σύνδεση</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Σύνδεση</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Ακύρωση</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Πύλες</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Επιλέξτε την ενεργή πύλη Zemrik</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Διεύθυνση URL της πύλης σας για το Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Παράβλεψη σφαλμάτων SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Προσθήκη πύλης</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Το Quillform απαιτεί το Portal for Zemrik 10.3.1 να έχει ρυθμιστεί με φιλοξενούμενο διακομιστή και Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Δεν υπάρχει πύλη σε αυτήν τη διεύθυνση URL</translation>
    </message>
</context>
</TS>
