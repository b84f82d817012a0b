<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>جارٍ تنزيل التبعية %1 من %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>الفلاش</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>تلقائي</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>إيقاف</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>العين الحمراء</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>تعبئة</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>توازن اللون الأبيض</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>ضوء الشمس</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>غائم</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>تنغستن</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>فلوري</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>التباين</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>التشبع</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>زيادة الحدة</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>الاتجاه</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>الكاميرا</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>التقاط</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>الصور</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>جارٍ تسجيل الدخول إلى %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>تسجيل الدخول إلى %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>اسم المستخدم</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>كلمة المرور</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>تذكّرني</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>جارٍ تسجيل الدخول</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>تسجيل الدخول</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>البوابات</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>حدد بوابة Zemrik النشطة</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>عنوان URL لبوابتك لـ Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>تجاهل أخطاء SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>إضافة بوابة</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>يتطلب Quillform أن تكون Portal for Zemrik 10.3.1 مهيأة مع خادم مستضاف (Hosted Server) و Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>لا توجد بوابة على عنوان URL هذا</translation>
    </message>
</context>
</TS>
