import Zemrik.Tessaline 1.0

App {
}
